#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

namespace Ombrel {

// One copy of a stylesheet's bytes in an OriginalStore.
struct KeptOriginal
{
    // Where the copy lies in the store.
    QString path;
    // When it was kept, to the second.
    QDateTime time;
    qint64 size = 0;

    bool operator==(const KeptOriginal &) const = default;
};

// Where the bytes of a stylesheet are kept before a save rewrites them, so
// that the user can always have them back. One flat folder of copies, each
// named for a person browsing it: "theme 2025-01-05 14.03.22 [1a2b3c4d].css"
// holds theme.css as it was at that time, the bracketed key telling apart
// files of one name in different folders, and " (2)" after the time telling
// apart two copies of one second.
//
// The folder never grows past its capacity for long: each new copy removes
// the oldest ones until the total fits again, but never the newest copy of a
// file. Everything runs on the thread of the event loop.
class OriginalStore : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 defaultCapacity = qint64(256) * 1024 * 1024;

    explicit OriginalStore(QString folder, qint64 capacity = defaultCapacity,
                           QObject *parent = nullptr);

    // "originals" in the application's data folder.
    static QString defaultFolder();

    QString folder() const { return m_folder; }
    qint64 capacity() const { return m_capacity; }

    // Keeps the bytes now at sourcePath, as of time, for a save that is about
    // to put a new file in its place. On the store's file system the copy
    // shares the file's bytes until then, so that it costs nothing: anything
    // written into the file in place before that save is kept too, since
    // that is what the save replaces. Elsewhere the bytes are copied. True
    // when they are in the store, also when its newest copy of the file held
    // them already; false when there is no file or they could not be kept.
    bool keep(const QString &sourcePath, const QDateTime &time = QDateTime::currentDateTime());

    // The copies of the file at sourcePath, newest first, as the folder
    // holds them now.
    QList<KeptOriginal> originals(const QString &sourcePath) const;
    // Whether there are any, asked as often as a menu is updated: the folder
    // is read again only when it changed since (to the file system's clock,
    // which may miss a change by hand within the same few milliseconds).
    bool hasOriginals(const QString &sourcePath) const;
    // What every copy in the store takes together.
    qint64 totalSize() const;

    // Makes store the one that every stylesheet keeps its originals in, for
    // as long as it lives.
    static void install(const std::shared_ptr<OriginalStore> &store);

Q_SIGNALS:
    // After a copy was added or removed.
    void changed();

private:
    struct Entry
    {
        KeptOriginal original;
        QString key;
        int sequence = 1;
    };

    static bool isOlder(const Entry &a, const Entry &b);
    enum class Reading { Always, WhenChanged };
    // Reads the folder again, or only when it changed since it was last read.
    void refresh(Reading reading) const;
    // From the folder as last read.
    QList<KeptOriginal> originalsRead(const QString &sourcePath) const;
    QString nameFor(const QString &sourcePath, const QDateTime &time, int sequence) const;
    void prune();

    QString m_folder;
    qint64 m_capacity;
    // The copies by the key of their file, oldest first, as of the folder's
    // modification time when it was read.
    mutable QHash<QString, QList<Entry>> m_entries;
    mutable QDateTime m_readAt;
    mutable bool m_read = false;
};

} // namespace Ombrel
