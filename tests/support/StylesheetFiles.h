#pragma once

// Real stylesheet files on disk for the tests: bytes written and read back
// whole, and a file loaded as the workspace loads it.

#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <memory>

namespace StylesheetFiles {

// Writes bytes to path, making the folders on the way.
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

// The bytes on disk, or none when the file cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The file read as UTF-8 and parsed, with its text as the original content.
inline Ombrel::CSSFilePtr loadFile(const QString &path)
{
    const QString text = QString::fromUtf8(readFile(path));
    return std::make_shared<Ombrel::CSSFile>(path, Ombrel::CSSParser::parse(text), text);
}

} // namespace StylesheetFiles
