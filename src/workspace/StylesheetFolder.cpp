#include "StylesheetFolder.h"

#include "model/CSSParser.h"
#include "workspace/HeapPrefault.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>

namespace Ombrel::StylesheetFolder {

namespace {

// An enumerator needs a folder it may list; anything else is "no enumerator".
bool canList(const QString &folder)
{
    const QFileInfo info(folder);
    return info.isDir() && info.isReadable() && info.isExecutable();
}

// What a parsed stylesheet takes in memory for each byte of its file: the
// pieces of its rulesets as UTF-16, the ruleset objects and the declaration
// lists, and its text kept as UTF-8. Measured on generated and real-world
// sheets.
constexpr qint64 modelBytesPerFileByte = 6;

} // namespace

std::optional<QString> decodeStylesheet(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

bool isStylesheetName(QStringView name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 && name.sliced(dot + 1).compare(u"css", Qt::CaseInsensitive) == 0;
}

std::optional<QStringList> stylesheetPaths(const QString &folder)
{
    if (!canList(folder))
        return std::nullopt;
    QStringList paths;
    // Without QDir::Hidden the walk neither lists nor enters hidden entries,
    // and without FollowSymlinks it never enters a linked folder. A folder
    // named like a stylesheet could never be read, so folders are not listed.
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (isStylesheetName(it.fileName()))
            paths.append(path);
    }
    return paths;
}

QStringList directories(const QString &folder)
{
    QStringList dirs{folder};
    if (!canList(folder))
        return dirs;
    // A link to a folder is not a folder of the tree: it is neither watched
    // nor walked into.
    QDirIterator it(folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        dirs.append(it.next());
    return dirs;
}

CSSFilePtr readStylesheet(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    // Read rather than mapped: for files of a stylesheet's size, unmapping
    // costs more than the copy, and a folder holds thousands of them.
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return nullptr;
    std::optional<QString> text = decodeStylesheet(bytes);
    if (!text)
        return nullptr;
    CSSParser::DroppedCounts dropped;
    CSSRulesetList rulesets = CSSParser::parse(*text, dropped);
    return std::make_shared<CSSFile>(path, std::move(rulesets), std::move(*text), dropped);
}

CSSFileList readStylesheets(const QStringList &paths)
{
    qint64 bytes = 0;
    for (const QString &path : paths)
        bytes += QFileInfo(path).size();
    const HeapPrefault prefault(bytes * modelBytesPerFileByte);
    CSSFileList files;
    files.reserve(paths.size());
    for (const QString &path : paths) {
        if (CSSFilePtr file = readStylesheet(path))
            files.append(std::move(file));
    }
    return files;
}

void sortByPath(CSSFileList &files)
{
    std::sort(files.begin(), files.end(),
              [](const CSSFilePtr &a, const CSSFilePtr &b) { return a->path() < b->path(); });
}

} // namespace Ombrel::StylesheetFolder
