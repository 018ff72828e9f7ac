#include "StylesheetFiles.h"
#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace Ombrel;
using namespace StylesheetFiles;

namespace {

// Stands for the user's preference, which the application gives the files.
void setAutoSave(bool on)
{
    CSSFile::setAutoSavePolicy([on] { return on; });
}

// Notes the moment of every write to one path by polling its inode, time of
// modification and size: an atomic save replaces the inode, so even a write
// of identical bytes is seen.
class DiskWatch : public QObject
{
public:
    DiskWatch(QString path, const QElapsedTimer &clock) : m_path(std::move(path)), m_clock(clock)
    {
        m_last = stamp();
        connect(&m_poll, &QTimer::timeout, this, [this] {
            const Stamp now = stamp();
            if (now != m_last) {
                m_last = now;
                writes.append(m_clock.elapsed());
            }
        });
        m_poll.setTimerType(Qt::PreciseTimer);
        m_poll.start(2);
    }

    // Milliseconds on the clock at which each write was seen.
    QList<qint64> writes;

private:
    struct Stamp
    {
        ino_t inode = 0;
        qint64 modifiedNs = 0;
        off_t size = -1;
        friend bool operator==(const Stamp &, const Stamp &) = default;
    };

    Stamp stamp() const
    {
        struct stat info;
        if (::stat(QFile::encodeName(m_path).constData(), &info) != 0)
            return {};
        return {info.st_ino, qint64(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec,
                info.st_size};
    }

    const QString m_path;
    const QElapsedTimer &m_clock;
    QTimer m_poll;
    Stamp m_last;
};

constexpr int generous = 10000;

} // namespace

class TestAutoSave : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_clocks = 0;

    // Lets at least one second go by, measured by auto-save itself: a fresh
    // file is changed and the test waits until its timer has written it.
    // Every timer armed before this call has fired when it returns.
    void waitForAFreshAutoSave()
    {
        const QString path = m_dir.filePath(QStringLiteral("clock-%1.css").arg(++m_clocks));
        QVERIFY(writeFile(path, "clock{}"));
        CSSFilePtr clock = loadFile(path);
        clock->markChanged();
        QTRY_COMPARE_WITH_TIMEOUT(readFile(path), QByteArray("clock {\n}\n"), generous);
        QTRY_VERIFY(!clock->hasUnsavedChanges());
    }

    static void setValue(const CSSFilePtr &file, const QString &value)
    {
        const CSSRulesetPtr ruleset = file->rulesets().first();
        CSSPropertyList properties = ruleset->properties();
        properties[0].value = value;
        ruleset->setProperties(properties);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void init() { setAutoSave(true); }

    void cleanup()
    {
        if (QTest::currentTestFailed()) {
            m_dir.setAutoRemove(false);
            qInfo("files kept in %s", qPrintable(m_dir.path()));
        }
        setAutoSave(false);
    }

    void commentLeavesTheDiskOneSecondAfterTheFirstChange()
    {
        const QString path = m_dir.filePath(QStringLiteral("comment.css"));
        QVERIFY(writeFile(path, "/* keep me */\na {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        QElapsedTimer clock;
        clock.start();
        DiskWatch watch(path, clock);

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QTRY_VERIFY_WITH_TIMEOUT(!watch.writes.isEmpty(), generous);

        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
        QCOMPARE(watch.writes.size(), 1);
        QVERIFY2(watch.writes[0] >= 990, qPrintable(QString::number(watch.writes[0])));
        QVERIFY2(watch.writes[0] < 1900, qPrintable(QString::number(watch.writes[0])));
        QTRY_VERIFY(!file->hasUnsavedChanges());
    }

    void fiveChangesHalfASecondApartWriteOnceASecondAfterTheLast()
    {
        const QString path = m_dir.filePath(QStringLiteral("five.css"));
        QVERIFY(writeFile(path, "a {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        QElapsedTimer clock;
        clock.start();
        DiskWatch watch(path, clock);

        QList<qint64> changes;
        QTimer pace;
        pace.setTimerType(Qt::PreciseTimer);
        connect(&pace, &QTimer::timeout, this, [&] {
            changes.append(clock.elapsed());
            setValue(file, QStringLiteral("v%1").arg(changes.size()));
            file->markChanged();
            if (changes.size() == 5)
                pace.stop();
        });
        changes.append(clock.elapsed());
        setValue(file, QStringLiteral("v1"));
        file->markChanged();
        pace.start(500);

        QTRY_VERIFY_WITH_TIMEOUT(!watch.writes.isEmpty(), generous);
        QCOMPARE(changes.size(), 5);
        for (qsizetype i = 1; i < changes.size(); ++i)
            QVERIFY2(changes[i] - changes[i - 1] < 900, "the changes came too far apart");
        QCOMPARE(watch.writes.size(), 1);
        const qint64 afterLast = watch.writes[0] - changes.last();
        QVERIFY2(afterLast >= 990, qPrintable(QString::number(afterLast)));
        QVERIFY2(afterLast < 1900, qPrintable(QString::number(afterLast)));
        QCOMPARE(readFile(path), QByteArray("a {\n    b: v5;\n}\n"));

        waitForAFreshAutoSave();
        QCOMPARE(watch.writes.size(), 1);
        QVERIFY(!file->hasUnsavedChanges());
    }

    void withAutoSaveOffTheFlagIsSetAndNothingIsWritten()
    {
        setAutoSave(false);
        const QString path = m_dir.filePath(QStringLiteral("off.css"));
        QVERIFY(writeFile(path, "/* c */ a{b:c}"));
        CSSFilePtr file = loadFile(path);
        QElapsedTimer clock;
        clock.start();
        DiskWatch watch(path, clock);

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        // Switching auto-save on saves no file that is already dirty.
        setAutoSave(true);
        waitForAFreshAutoSave();

        QVERIFY(clock.elapsed() >= 1000);
        QVERIFY(watch.writes.isEmpty());
        QCOMPARE(readFile(path), QByteArray("/* c */ a{b:c}"));
        QVERIFY(file->hasUnsavedChanges());
    }

    void pendingTimerStillFiresWhenThePreferenceGoesOff()
    {
        const QString path = m_dir.filePath(QStringLiteral("pending.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        CSSFilePtr file = loadFile(path);

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        setAutoSave(false);

        QTRY_COMPARE_WITH_TIMEOUT(readFile(path), QByteArray("a {\n    b: c;\n}\n"), generous);
        QTRY_VERIFY(!file->hasUnsavedChanges());
    }

    void changeThatLeavesTheFileCleanKeepsThePendingTimer()
    {
        const QString path = m_dir.filePath(QStringLiteral("clean.css"));
        QVERIFY(writeFile(path, "a {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);
        QElapsedTimer clock;
        clock.start();
        DiskWatch watch(path, clock);

        setValue(file, QStringLiteral("d"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        // The change back comes 0.8 s later: a timer it restarted would
        // write 1.8 s after the first change instead of 1.0 s.
        qint64 cleanAt = -1;
        QTimer::singleShot(800, Qt::PreciseTimer, this, [&] {
            cleanAt = clock.elapsed();
            setValue(file, QStringLiteral("c"));
            file->markChanged();
        });
        QTRY_VERIFY(cleanAt >= 0);
        QTRY_VERIFY(!file->hasUnsavedChanges());
        QVERIFY2(cleanAt < 990, "the change back came after the timer was due");

        QTRY_VERIFY_WITH_TIMEOUT(!watch.writes.isEmpty(), generous);
        QCOMPARE(watch.writes.size(), 1);
        QVERIFY2(watch.writes[0] >= 990, qPrintable(QString::number(watch.writes[0])));
        QVERIFY2(watch.writes[0] < cleanAt + 990, qPrintable(QString::number(watch.writes[0])));
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void explicitSaveDoesNotCancelThePendingTimer()
    {
        const QString path = m_dir.filePath(QStringLiteral("saved.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        CSSFilePtr file = loadFile(path);
        QElapsedTimer clock;
        clock.start();
        DiskWatch watch(path, clock);

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QVERIFY(file->save());
        QTRY_COMPARE(watch.writes.size(), 1);
        QVERIFY(watch.writes[0] < 990);

        QTRY_COMPARE_WITH_TIMEOUT(watch.writes.size(), 2, generous);
        QVERIFY2(watch.writes[1] >= 990, qPrintable(QString::number(watch.writes[1])));
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void revertDoesNotCancelThePendingTimer()
    {
        const QString path = m_dir.filePath(QStringLiteral("reverted.css"));
        QVERIFY(writeFile(path, "/* gone after revert */\na {\n    b: c;\n}\n"));
        CSSFilePtr file = loadFile(path);

        setValue(file, QStringLiteral("d"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        file->revert();
        QTRY_VERIFY(!file->hasUnsavedChanges());

        QTRY_COMPARE_WITH_TIMEOUT(readFile(path), QByteArray("a {\n    b: c;\n}\n"), generous);
    }

    void pendingTimerKeepsTheFileAliveUntilItFired()
    {
        const QString path = m_dir.filePath(QStringLiteral("orphan.css"));
        QVERIFY(writeFile(path, "a{b:c}"));
        CSSFilePtr file = loadFile(path);
        const std::weak_ptr<CSSFile> watch = file;

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        file.reset();
        QVERIFY(!watch.expired());

        QTRY_VERIFY_WITH_TIMEOUT(watch.expired(), generous);
        QCOMPARE(readFile(path), QByteArray("a {\n    b: c;\n}\n"));
    }

    void failedTimerSaveStaysDirtySilentAndIsNotRetried()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        // A folder where the file should be: no atomic write can replace it,
        // whoever runs the test.
        const QString path = m_dir.filePath(QStringLiteral("blocked.css"));
        QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("blocked.css")));
        auto file = std::make_shared<CSSFile>(path, CSSParser::parse(QStringLiteral("a{b:c}")),
                                              QStringLiteral("a{b:c}"));

        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        waitForAFreshAutoSave();

        QVERIFY(file->hasUnsavedChanges());
        QVERIFY(QFileInfo(path).isDir());
        QCOMPARE(file->originalContent(), QStringLiteral("a{b:c}"));
        QVERIFY(QGuiApplication::topLevelWindows().isEmpty());

        // Once the path could be written, still nothing happens until the
        // next change arms a new timer.
        QVERIFY(QDir(m_dir.path()).rmdir(QStringLiteral("blocked.css")));
        waitForAFreshAutoSave();
        QVERIFY(!QFileInfo::exists(path));
        QVERIFY(file->hasUnsavedChanges());

        file->markChanged();
        QTRY_COMPARE_WITH_TIMEOUT(readFile(path), QByteArray("a {\n    b: c;\n}\n"), generous);
        QTRY_VERIFY(!file->hasUnsavedChanges());
    }
};

QTEST_MAIN(TestAutoSave)
#include "tst_autosave.moc"
