// The store of originals on real folders: names a person can read, copies
// that outlive the save that replaces their file, newest first, the size cap
// with its order of removal, and failures that say so without throwing.

#include "StylesheetFiles.h"
#include "model/CSSFile.h"
#include "workspace/OriginalStore.h"

#include <QDir>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Ombrel;
using namespace StylesheetFiles;

namespace {

QDateTime at(int day, int hour, int minute, int second)
{
    return QDateTime(QDate(2025, 1, day), QTime(hour, minute, second));
}

// Replaces the file the way a save does: a new file renamed over the old.
bool replaceAtomically(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

QStringList fileNames(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

dev_t deviceOf(const QString &path)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_dev : dev_t(0);
}

ino_t inodeOf(const QString &path)
{
    struct stat info = {};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : ino_t(0);
}

} // namespace

class TestOriginalStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // Permissions mean nothing to root, and CI runs as root: the test
        // drops to an ordinary user so that a read-only folder is read-only.
        if (::geteuid() == 0) {
            QVERIFY(::setgid(65534) == 0);
            QVERIFY(::setuid(65534) == 0);
        }
    }

    void cleanup() { CSSFile::setOriginalKeeper({}); }

    void copyIsNamedForThePersonBrowsing()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("site/theme.css"));
        QVERIFY(writeFile(source, "a{b:c}"));
        const QString folder = dir.filePath(QStringLiteral("data/originals"));
        OriginalStore store(folder);
        QSignalSpy changed(&store, &OriginalStore::changed);
        QVERIFY(store.keep(source, at(5, 14, 3, 22)));
        QCOMPARE(changed.size(), 1);

        const QStringList names = fileNames(folder);
        QCOMPARE(names.size(), 1);
        static const QRegularExpression pattern(
            QStringLiteral(R"(^theme 2025-01-05 14\.03\.22 \[[0-9a-f]{8}\]\.css$)"));
        QVERIFY2(pattern.match(names.first()).hasMatch(), qPrintable(names.first()));
        QCOMPARE(readFile(QDir(folder).filePath(names.first())), QByteArray("a{b:c}"));

        const QList<KeptOriginal> kept = store.originals(source);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept.first().time, at(5, 14, 3, 22));
        QCOMPARE(kept.first().size, 6);
        QCOMPARE(kept.first().path, QDir(folder).filePath(names.first()));
        QVERIFY(store.hasOriginals(source));
        QVERIFY(!store.hasOriginals(dir.filePath(QStringLiteral("site/other.css"))));
    }

    // The save that follows writes a new file in the source's place; the
    // kept bytes stay as they were.
    void copyOutlivesTheSaveThatReplacesItsFile()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(source, "/* mine */ a{b:c}"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(store.keep(source));
        QVERIFY(replaceAtomically(source, "a {\n    b: c;\n}\n"));
        const QList<KeptOriginal> kept = store.originals(source);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(readFile(kept.first().path), QByteArray("/* mine */ a{b:c}"));
        QCOMPARE(kept.first().size, 17);
    }

    // Until the save has put a new file in its place, what is written into
    // the file in place is kept too: the store ends with what the save
    // replaced, and from then on its bytes are its own.
    void keepsWhatTheSaveReplaces()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(source, "/* mine */"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(store.keep(source));
        QVERIFY(writeFile(source, "/* another program's */"));
        QVERIFY(replaceAtomically(source, "a {\n}\n"));
        const KeptOriginal kept = store.originals(source).value(0);
        QCOMPARE(readFile(kept.path), QByteArray("/* another program's */"));
        QVERIFY(writeFile(source, "written in place after the save"));
        QCOMPARE(readFile(kept.path), QByteArray("/* another program's */"));
        QCOMPARE(store.originals(source).size(), 1);
    }

    // Where the store lies on another file system than the stylesheet, the
    // bytes are copied.
    void copiesAcrossFileSystems()
    {
        QTemporaryDir dir;
        QTemporaryDir shared(QStringLiteral("/dev/shm/ombrel-test-XXXXXX"));
        if (!shared.isValid() || deviceOf(shared.path()) == deviceOf(dir.path()))
            QSKIP("no second file system to keep across");
        const QString source = shared.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(source, "/* mine */ a{b:c}"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(store.keep(source));
        const KeptOriginal kept = store.originals(source).value(0);
        QVERIFY(inodeOf(kept.path) != 0);
        QCOMPARE(readFile(kept.path), QByteArray("/* mine */ a{b:c}"));
        QVERIFY(replaceAtomically(source, "a {\n}\n"));
        QCOMPARE(readFile(kept.path), QByteArray("/* mine */ a{b:c}"));
    }

    // A stylesheet reached through a symbolic link is kept as bytes, not as
    // a second link that would follow the file.
    void symbolicLinkIsKeptAsItsBytes()
    {
        QTemporaryDir dir;
        const QString target = dir.filePath(QStringLiteral("real/theme.css"));
        QVERIFY(writeFile(target, "/* mine */"));
        const QString link = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(QFile::link(target, link));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(store.keep(link));
        const KeptOriginal kept = store.originals(link).value(0);
        QVERIFY(!QFileInfo(kept.path).isSymLink());
        QVERIFY(replaceAtomically(target, "a {\n}\n"));
        QCOMPARE(readFile(kept.path), QByteArray("/* mine */"));
    }

    void originalsComeNewestFirstAndFilesOfOneNameStayApart()
    {
        QTemporaryDir dir;
        const QString first = dir.filePath(QStringLiteral("one/theme.css"));
        const QString second = dir.filePath(QStringLiteral("two/theme.css"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(writeFile(first, "1"));
        QVERIFY(store.keep(first, at(1, 9, 0, 0)));
        QVERIFY(writeFile(second, "other"));
        QVERIFY(store.keep(second, at(2, 9, 0, 0)));
        QVERIFY(replaceAtomically(first, "22"));
        QVERIFY(store.keep(first, at(3, 9, 0, 0)));
        QVERIFY(replaceAtomically(first, "333"));
        QVERIFY(store.keep(first, at(1, 8, 0, 0)));

        const QList<KeptOriginal> kept = store.originals(first);
        QCOMPARE(kept.size(), 3);
        QCOMPARE(kept[0].time, at(3, 9, 0, 0));
        QCOMPARE(kept[1].time, at(1, 9, 0, 0));
        QCOMPARE(kept[2].time, at(1, 8, 0, 0));
        QCOMPARE(readFile(kept[0].path), QByteArray("22"));
        QCOMPARE(kept[2].size, 3);
        QCOMPARE(store.originals(second).size(), 1);
        QCOMPARE(readFile(store.originals(second).first().path), QByteArray("other"));
    }

    void copiesOfOneSecondAreNumbered()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        const QString folder = dir.filePath(QStringLiteral("originals"));
        OriginalStore store(folder);
        QVERIFY(writeFile(source, "a"));
        QVERIFY(store.keep(source, at(5, 14, 3, 22).addMSecs(100)));
        QVERIFY(replaceAtomically(source, "b"));
        QVERIFY(store.keep(source, at(5, 14, 3, 22).addMSecs(900)));
        const QStringList names = fileNames(folder);
        QCOMPARE(names.size(), 2);
        QVERIFY(names.first().contains(QLatin1String("14.03.22 (2) [")));
        const QList<KeptOriginal> kept = store.originals(source);
        QCOMPARE(kept.size(), 2);
        QCOMPARE(readFile(kept[0].path), QByteArray("b"));
        QCOMPARE(readFile(kept[1].path), QByteArray("a"));
    }

    // Bytes that the newest copy of the file already holds are not added
    // again, and count as kept.
    void sameBytesAsTheNewestCopyAddNothing()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(writeFile(source, "same"));
        QVERIFY(store.keep(source, at(1, 1, 0, 0)));
        QVERIFY(store.keep(source, at(1, 2, 0, 0)));
        QCOMPARE(store.originals(source).size(), 1);
        QVERIFY(replaceAtomically(source, "sane"));
        QVERIFY(store.keep(source, at(1, 3, 0, 0)));
        QCOMPARE(store.originals(source).size(), 2);
    }

    // Over the cap the oldest copies go first, whichever file they are of,
    // but never the newest copy of a file, even when that alone is over.
    void capRemovesOldestFirstButNeverTheNewestOfAFile()
    {
        QTemporaryDir dir;
        const QString a = dir.filePath(QStringLiteral("a.css"));
        const QString b = dir.filePath(QStringLiteral("b.css"));
        OriginalStore store(dir.filePath(QStringLiteral("originals")), 250);
        const auto keep = [&](const QString &path, char fill, const QDateTime &time) {
            return replaceAtomically(path, QByteArray(100, fill)) && store.keep(path, time);
        };
        QVERIFY(keep(a, '1', at(1, 1, 0, 0)));
        QVERIFY(keep(b, '2', at(1, 2, 0, 0)));
        QCOMPARE(store.totalSize(), 200);
        QVERIFY(keep(a, '3', at(1, 3, 0, 0)));
        // 300 over 250: a's first copy is the oldest that may go.
        QCOMPARE(store.totalSize(), 200);
        QCOMPARE(readFile(store.originals(a).first().path), QByteArray(100, '3'));
        QCOMPARE(store.originals(a).size(), 1);
        QCOMPARE(store.originals(b).size(), 1);

        QVERIFY(keep(b, '4', at(1, 4, 0, 0)));
        QCOMPARE(store.originals(b).size(), 1);
        QCOMPARE(readFile(store.originals(b).first().path), QByteArray(100, '4'));

        // One copy larger than the cap stays, as the newest of its file;
        // the newest of the other file stays too.
        QVERIFY(replaceAtomically(a, QByteArray(400, '5')));
        QVERIFY(store.keep(a, at(1, 5, 0, 0)));
        QCOMPARE(store.originals(a).size(), 1);
        QCOMPARE(store.originals(a).first().size, 400);
        QCOMPARE(store.originals(b).size(), 1);
        QCOMPARE(store.totalSize(), 500);
    }

    void missingSourceIsNothingToKeep()
    {
        QTemporaryDir dir;
        OriginalStore store(dir.filePath(QStringLiteral("originals")));
        QVERIFY(!store.keep(dir.filePath(QStringLiteral("gone.css"))));
        QVERIFY(!QFileInfo::exists(store.folder()));
    }

    void readOnlyFolderKeepsNothingAndSaysSo()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(source, "a{b:c}"));
        const QString folder = dir.filePath(QStringLiteral("originals"));
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0555) == 0);
        OriginalStore store(folder);
        QSignalSpy changed(&store, &OriginalStore::changed);
        QVERIFY(!store.keep(source));
        QVERIFY(changed.isEmpty());
        QVERIFY(!store.hasOriginals(source));

        // A data folder that cannot even be made.
        QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0555) == 0);
        OriginalStore unmade(dir.filePath(QStringLiteral("data/originals")));
        QVERIFY(!unmade.keep(source));
        QVERIFY(::chmod(QFile::encodeName(dir.path()).constData(), 0755) == 0);
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0755) == 0);
    }

    // Files the store did not name are none of its copies; copies removed by
    // hand are gone from its lists at once.
    void foreignFilesAreIgnoredAndRemovedCopiesVanish()
    {
        QTemporaryDir dir;
        const QString source = dir.filePath(QStringLiteral("theme.css"));
        const QString folder = dir.filePath(QStringLiteral("originals"));
        OriginalStore store(folder);
        QVERIFY(writeFile(source, "a"));
        QVERIFY(store.keep(source, at(1, 1, 0, 0)));
        const QString copy = store.originals(source).first().path;
        QVERIFY(writeFile(QDir(folder).filePath(QStringLiteral("notes.txt")), "x"));
        QVERIFY(writeFile(copy + QStringLiteral(".AbCdEf"), "partial"));
        QVERIFY(writeFile(
            QDir(folder).filePath(QStringLiteral("theme 2025-13-45 99.99.99 [0123abcd].css")),
            "x"));
        QCOMPARE(store.originals(source).size(), 1);
        QCOMPARE(store.totalSize(), 1);

        QVERIFY(QFile::remove(copy));
        QVERIFY(store.originals(source).isEmpty());
        QVERIFY(!store.hasOriginals(source));
    }

    // Installed, the store is where every stylesheet's save keeps; once it
    // is gone, saves go on without it.
    void installedStoreKeepsForEveryFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, "/* mine */ a{b:c}"));
        auto store = std::make_shared<OriginalStore>(dir.filePath(QStringLiteral("originals")));
        OriginalStore::install(store);
        CSSFilePtr file = loadFile(path);
        QVERIFY(file->save());
        QCOMPARE(file->originalState(), OriginalState::Kept);
        QCOMPARE(readFile(store->originals(path).value(0).path), QByteArray("/* mine */ a{b:c}"));

        store.reset();
        const QString other = dir.filePath(QStringLiteral("other.css"));
        QVERIFY(writeFile(other, "/* mine */ a{b:c}"));
        CSSFilePtr second = loadFile(other);
        QVERIFY(second->save());
        QCOMPARE(second->originalState(), OriginalState::NotKept);
    }

    // The application's store lies in its data folder, which the tests
    // point at a folder of the build tree.
    void defaultFolderIsInTheApplicationsData()
    {
        const QString folder = OriginalStore::defaultFolder();
        QCOMPARE(QFileInfo(folder).fileName(), QStringLiteral("originals"));
        QCOMPARE(QFileInfo(folder).path(),
                 QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
        QVERIFY2(folder.startsWith(QStringLiteral(OMBREL_TEST_SETTINGS_DIR)), qPrintable(folder));
    }
};

QTEST_GUILESS_MAIN(TestOriginalStore)
#include "tst_originalstore.moc"
