#include "OriginalStore.h"

#include "model/CSSFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace Ombrel {

namespace {

const QString timeFormat = QStringLiteral("yyyy-MM-dd HH.mm.ss");

// A file name stays well inside the 255 bytes most file systems allow once
// the time and the key are added.
constexpr qsizetype maxBaseBytes = 200;

// Tells apart files of one name in different folders.
QString keyOf(const QString &sourcePath)
{
    const QByteArray hash =
        QCryptographicHash::hash(QDir::cleanPath(sourcePath).toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().left(8));
}

QString baseOf(const QString &sourcePath)
{
    QString base = QFileInfo(sourcePath).completeBaseName();
    while (base.toUtf8().size() > maxBaseBytes)
        base.chop(1);
    return base;
}

QString suffixOf(const QString &sourcePath)
{
    const QString suffix = QFileInfo(sourcePath).suffix();
    return suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
}

// base, time, optional sequence, key, optional suffix. A name with a second
// suffix (a temporary file left by a crash) is none of the store's.
const QRegularExpression &namePattern()
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^(.*) (\d{4}-\d{2}-\d{2} \d{2}\.\d{2}\.\d{2})(?: \((\d+)\))? \[([0-9a-f]{8})\](\.[^.]*)?$)"));
    return pattern;
}

bool sameBytes(const QString &a, const QString &b)
{
    QFile first(a);
    QFile second(b);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) &&
           first.readAll() == second.readAll();
}

// The bytes at source under the store's name target, written whole or not at
// all, and on disk before the save that follows replaces the source.
//
// On one file system the store takes a second link to the file: a save never
// writes a file in place but puts a new one in its place, which leaves the
// linked bytes to the store alone, so keeping costs no copy at all. Until that
// save has replaced the file, whatever else writes into it in place goes into
// the kept bytes too: the store holds what the save replaced. Elsewhere the
// bytes are cloned where the file system can share them, or copied.
bool keepBytes(const QString &source, const QString &target)
{
#ifdef Q_OS_UNIX
    // Following a symbolic link, so that the store holds the bytes and not a
    // second name for the link.
    if (::linkat(AT_FDCWD, QFile::encodeName(source).constData(), AT_FDCWD,
                 QFile::encodeName(target).constData(), AT_SYMLINK_FOLLOW) == 0)
        return true;
#endif
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return false;
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return false;
#ifdef Q_OS_LINUX
    if (::ioctl(out.handle(), FICLONE, in.handle()) == 0)
        return out.commit();
#endif
    const QByteArray bytes = in.readAll();
    if (in.error() != QFileDevice::NoError) {
        out.cancelWriting();
        return false;
    }
    return out.write(bytes) == bytes.size() && out.commit();
}

} // namespace

OriginalStore::OriginalStore(QString folder, qint64 capacity, QObject *parent)
    : QObject(parent), m_folder(QDir::cleanPath(folder)), m_capacity(capacity)
{}

QString OriginalStore::defaultFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation))
        .filePath(QStringLiteral("originals"));
}

bool OriginalStore::isOlder(const Entry &a, const Entry &b)
{
    return a.original.time != b.original.time ? a.original.time < b.original.time
                                              : a.sequence < b.sequence;
}

void OriginalStore::refresh(Reading reading) const
{
    const QDateTime modified = QFileInfo(m_folder).lastModified();
    if (reading == Reading::WhenChanged && m_read && modified == m_readAt)
        return;
    m_entries.clear();
    const QFileInfoList infos = QDir(m_folder).entryInfoList(QDir::Files);
    for (const QFileInfo &info : infos) {
        const QRegularExpressionMatch match = namePattern().match(info.fileName());
        if (!match.hasMatch())
            continue;
        const QDateTime time = QDateTime::fromString(match.captured(2), timeFormat);
        if (!time.isValid())
            continue;
        const int sequence = match.hasCaptured(3) ? match.captured(3).toInt() : 1;
        m_entries[match.captured(4)].append(
            {{info.absoluteFilePath(), time, info.size()}, match.captured(4), sequence});
    }
    for (QList<Entry> &entries : m_entries)
        std::sort(entries.begin(), entries.end(), &OriginalStore::isOlder);
    m_readAt = modified;
    m_read = true;
}

QString OriginalStore::nameFor(const QString &sourcePath, const QDateTime &time, int sequence) const
{
    const QString counter = sequence > 1 ? QStringLiteral(" (%1)").arg(sequence) : QString();
    return QStringLiteral("%1 %2%3 [%4]%5")
        .arg(baseOf(sourcePath), time.toString(timeFormat), counter, keyOf(sourcePath),
             suffixOf(sourcePath));
}

bool OriginalStore::keep(const QString &sourcePath, const QDateTime &time)
{
    const QFileInfo source(sourcePath);
    if (!source.isFile())
        return false;
    refresh(Reading::Always);
    const QList<KeptOriginal> kept = originalsRead(sourcePath);
    if (!kept.isEmpty() && kept.first().size == source.size() &&
        sameBytes(kept.first().path, sourcePath))
        return true;
    if (!QDir().mkpath(m_folder))
        return false;
    const QDir folder(m_folder);
    // Whole seconds: a second copy within one second of the same file is
    // numbered instead.
    const QDateTime second = time.addMSecs(-time.time().msec());
    int sequence = 1;
    while (QFileInfo::exists(folder.filePath(nameFor(sourcePath, second, sequence))))
        ++sequence;
    if (!keepBytes(sourcePath, folder.filePath(nameFor(sourcePath, second, sequence))))
        return false;
    prune();
    Q_EMIT changed();
    return true;
}

void OriginalStore::prune()
{
    refresh(Reading::Always);
    qint64 total = 0;
    QList<Entry> removable;
    for (const QList<Entry> &entries : std::as_const(m_entries)) {
        for (const Entry &entry : entries)
            total += entry.original.size;
        removable.append(entries.mid(0, entries.size() - 1));
    }
    if (total <= m_capacity)
        return;
    std::sort(removable.begin(), removable.end(), &OriginalStore::isOlder);
    for (const Entry &entry : std::as_const(removable)) {
        if (total <= m_capacity)
            break;
        if (QFile::remove(entry.original.path))
            total -= entry.original.size;
    }
    refresh(Reading::Always);
}

QList<KeptOriginal> OriginalStore::originals(const QString &sourcePath) const
{
    refresh(Reading::Always);
    return originalsRead(sourcePath);
}

QList<KeptOriginal> OriginalStore::originalsRead(const QString &sourcePath) const
{
    const QString base = baseOf(sourcePath);
    const QString suffix = suffixOf(sourcePath);
    QList<KeptOriginal> found;
    const QList<Entry> entries = m_entries.value(keyOf(sourcePath));
    for (auto it = entries.crbegin(); it != entries.crend(); ++it) {
        // The key is short: the name must agree as well.
        const QString name = QFileInfo(it->original.path).fileName();
        if (name.startsWith(base + QLatin1Char(' ')) && name.endsWith(suffix))
            found.append(it->original);
    }
    return found;
}

bool OriginalStore::hasOriginals(const QString &sourcePath) const
{
    refresh(Reading::WhenChanged);
    return !originalsRead(sourcePath).isEmpty();
}

qint64 OriginalStore::totalSize() const
{
    refresh(Reading::Always);
    qint64 total = 0;
    for (const QList<Entry> &entries : std::as_const(m_entries)) {
        for (const Entry &entry : entries)
            total += entry.original.size;
    }
    return total;
}

void OriginalStore::install(const std::shared_ptr<OriginalStore> &store)
{
    CSSFile::setOriginalKeeper([store = std::weak_ptr<OriginalStore>(store)](const QString &path) {
        const std::shared_ptr<OriginalStore> kept = store.lock();
        return kept && kept->keep(path);
    });
}

} // namespace Ombrel
