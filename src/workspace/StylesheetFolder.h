#pragma once

#include "model/CSSFile.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <optional>

// How a folder of stylesheets is read from disk: which entries count, how a
// file becomes a CSSFile, and the one order of the file list. The initial load
// and every rescan go through these, so that both see the same files.
namespace Ombrel::StylesheetFolder {

// True when the name's extension, in any case, is "css": "FOO.CSS" counts,
// "a.css.bak" does not.
bool isStylesheetName(QStringView name);

// Every stylesheet path below folder, recursively, in enumeration order.
// Hidden entries and everything below a hidden folder are left out, and a
// symbolic link to a folder is never descended into, so a link loop cannot
// trap the walk. Nothing is read. nullopt when the folder cannot be listed.
std::optional<QStringList> stylesheetPaths(const QString &folder);

// folder itself, then every folder below it that the walk of stylesheetPaths
// enters, in enumeration order.
QStringList directories(const QString &folder);

// The bytes of a stylesheet as text. Strict: a malformed UTF-8 sequence
// anywhere, including one cut off at the end, rejects the whole text.
std::optional<QString> decodeStylesheet(QByteArrayView bytes);

// Reads the whole file as UTF-8 and parses it, counting what the parse drops. nullptr when the file
// cannot be read or is not valid UTF-8: such a file does not exist for a workspace.
CSSFilePtr readStylesheet(const QString &path);

// readStylesheet() of every path, in order, leaving out those that cannot be
// read. The memory the parsed files will take is mapped ahead in one go.
CSSFileList readStylesheets(const QStringList &paths);

// Ascending by full path, compared as plain strings: no natural numbers, no
// locale, no folders first, upper case before lower case.
void sortByPath(CSSFileList &files);

} // namespace Ombrel::StylesheetFolder
