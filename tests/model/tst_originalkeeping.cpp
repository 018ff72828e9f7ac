// A stylesheet's save asks the original keeper to keep the bytes on disk
// before the first save that rewrites a loaded text it does not keep whole,
// once per loaded text, and goes on whatever the keeper answers. Real files
// in temporary folders; the keeper records what was on disk when it was asked.

#include "StylesheetFiles.h"
#include "model/CSSFile.h"
#include "model/CSSParser.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Ombrel;
using namespace StylesheetFiles;

namespace {

const QByteArray commented = "/* Theme */\n.card { color: red; }\n@media print { .card { color: "
                             "black; } }\n.btn{padding:0}\n";

// Every call of the keeper, with the bytes at the path at that moment.
struct KeeperLog
{
    QStringList paths;
    QList<QByteArray> bytes;
    bool answer = true;
};

std::shared_ptr<KeeperLog> installKeeper(bool answer = true)
{
    auto log = std::make_shared<KeeperLog>();
    log->answer = answer;
    CSSFile::setOriginalKeeper([log](const QString &path) {
        log->paths.append(path);
        log->bytes.append(readFile(path));
        return log->answer;
    });
    return log;
}

// A file read and parsed as the workspace does, counts included.
CSSFilePtr load(const QString &path)
{
    const QString text = QString::fromUtf8(readFile(path));
    CSSParser::DroppedCounts dropped;
    CSSRulesetList rulesets = CSSParser::parse(text, dropped);
    return std::make_shared<CSSFile>(path, std::move(rulesets), text, dropped);
}

void edit(const CSSFilePtr &file, const QString &value)
{
    CSSRulesetPtr first = file->rulesets().first();
    CSSPropertyList properties = first->properties();
    properties.first().value = value;
    first->setProperties(properties);
    file->markChanged();
}

} // namespace

class TestOriginalKeeping : public QObject
{
    Q_OBJECT

    QString generatedForm(const QByteArray &bytes)
    {
        const QString text = QString::fromUtf8(bytes);
        return CSSFile(QString(), CSSParser::parse(text), text).generateCSS();
    }

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

    void cleanup()
    {
        CSSFile::setOriginalKeeper({});
        CSSFile::setAutoSavePolicy([] { return false; });
    }

    void loadedTextIsJudged_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("whole");
        QTest::newRow("generated form") << QStringLiteral("a {\n    b: c;\n}\n\nd {\n}\n") << true;
        QTest::newRow("empty new file") << QString() << true;
        QTest::newRow("comment") << QStringLiteral("/* x */\na {\n    b: c;\n}\n") << false;
        QTest::newRow("other spacing") << QStringLiteral("a { b: c; }\n") << false;
        QTest::newRow("no final line break") << QStringLiteral("a {\n    b: c;\n}") << false;
        QTest::newRow("two blank lines between")
            << QStringLiteral("a {\n    b: c;\n}\n\n\nd {\n}\n") << false;
        QTest::newRow("declaration without colon")
            << QStringLiteral("a {\n    b: c;\n    junk;\n}\n") << false;
        QTest::newRow("crlf line ends") << QStringLiteral("a {\r\n    b: c;\r\n}\r\n") << false;
        QTest::newRow("only white space") << QStringLiteral("\n\n") << false;
        QTest::newRow("no rulesets, one line break") << QStringLiteral("\n") << true;
    }

    void loadedTextIsJudged()
    {
        QFETCH(QString, text);
        QFETCH(bool, whole);
        CSSParser::DroppedCounts dropped;
        const CSSRulesetList rulesets = CSSParser::parse(text, dropped);
        const CSSFile file(QStringLiteral("/x/a.css"), rulesets, text, dropped);
        QCOMPARE(file.originalState(), whole ? OriginalState::Whole : OriginalState::BeforeSave);
    }

    void firstLossySaveKeepsTheBytesOnDiskOnce()
    {
        const auto keeper = installKeeper();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        QCOMPARE(file->originalState(), OriginalState::BeforeSave);
        QCOMPARE(file->droppedCounts(), (CSSParser::DroppedCounts{1, 1}));

        QSignalSpy states(file.get(), &CSSFile::originalStateChanged);
        edit(file, QStringLiteral("blue"));
        QVERIFY(file->save());
        QCOMPARE(keeper->paths, QStringList{path});
        QCOMPARE(keeper->bytes.first(), commented);
        QCOMPARE(readFile(path), file->generateCSS().toUtf8());
        QCOMPARE(file->originalState(), OriginalState::Kept);
        QCOMPARE(states.size(), 1);

        // Later saves of the same session keep nothing more.
        edit(file, QStringLiteral("green"));
        QVERIFY(file->save());
        QVERIFY(file->save());
        QCOMPARE(keeper->paths.size(), 1);
        QCOMPARE(file->originalState(), OriginalState::Kept);
    }

    void losslessSaveKeepsNothing()
    {
        const auto keeper = installKeeper();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("plain.css"));
        QVERIFY(writeFile(path, generatedForm(commented).toUtf8()));
        const CSSFilePtr file = load(path);
        QCOMPARE(file->originalState(), OriginalState::Whole);
        edit(file, QStringLiteral("blue"));
        QVERIFY(file->save());
        QVERIFY(keeper->paths.isEmpty());
        QCOMPARE(file->originalState(), OriginalState::Whole);

        // A new, empty file neither.
        const QString fresh = dir.filePath(QStringLiteral("untitled.css"));
        QVERIFY(writeFile(fresh, QByteArray()));
        auto empty = std::make_shared<CSSFile>(fresh, CSSRulesetList(), QString());
        QVERIFY(empty->save());
        QVERIFY(keeper->paths.isEmpty());
    }

    void failedKeepStillSavesAndSaysSo()
    {
        const auto keeper = installKeeper(false);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        edit(file, QStringLiteral("blue"));
        QVERIFY(file->save());
        QCOMPARE(keeper->paths.size(), 1);
        QCOMPARE(readFile(path), file->generateCSS().toUtf8());
        QCOMPARE(file->originalState(), OriginalState::NotKept);
        QTRY_VERIFY(!file->hasUnsavedChanges());

        // Without any keeper the save goes on the same way.
        CSSFile::setOriginalKeeper({});
        const QString other = dir.filePath(QStringLiteral("other.css"));
        QVERIFY(writeFile(other, commented));
        const CSSFilePtr second = load(other);
        QVERIFY(second->save());
        QCOMPARE(second->originalState(), OriginalState::NotKept);
        QCOMPARE(readFile(other), second->generateCSS().toUtf8());
    }

    // A save that fails after the keeper kept the bytes does not keep them
    // again; one that fails after the keeper could not keep them asks again,
    // since the bytes are still on disk.
    void failedWriteKeepsOncePerLoadedText()
    {
        QTemporaryDir dir;
        const QString folder = dir.filePath(QStringLiteral("locked"));
        QVERIFY(QDir().mkpath(folder));
        const QString path = QDir(folder).filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        const auto keeper = installKeeper(true);
        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0555) == 0);
        QVERIFY(!file->save());
        QVERIFY(!file->save());
        QCOMPARE(keeper->paths.size(), 1);
        QCOMPARE(file->originalState(), OriginalState::BeforeSave);
        QCOMPARE(readFile(path), commented);

        const CSSFilePtr other = load(path);
        keeper->answer = false;
        QVERIFY(!other->save());
        QVERIFY(!other->save());
        QCOMPARE(keeper->paths.size(), 3);
        QCOMPARE(other->originalState(), OriginalState::BeforeSave);

        QVERIFY(::chmod(QFile::encodeName(folder).constData(), 0755) == 0);
        keeper->answer = true;
        QVERIFY(file->save());
        QCOMPARE(keeper->paths.size(), 3);
        QCOMPARE(file->originalState(), OriginalState::Kept);
    }

    // What another program left on disk is what counts: bytes that the save
    // writes again, or no file at all, are nothing to keep.
    void nothingDifferentOnDiskIsNothingToKeep()
    {
        const auto keeper = installKeeper();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        QVERIFY(writeFile(path, file->generateCSS().toUtf8()));
        QVERIFY(file->save());
        QVERIFY(keeper->paths.isEmpty());
        QCOMPARE(file->originalState(), OriginalState::Whole);

        const QString gone = dir.filePath(QStringLiteral("gone.css"));
        QVERIFY(writeFile(gone, commented));
        const CSSFilePtr removed = load(gone);
        QVERIFY(QFile::remove(gone));
        QVERIFY(removed->save());
        QVERIFY(keeper->paths.isEmpty());
        QCOMPARE(removed->originalState(), OriginalState::Whole);

        // Bytes of the same size that differ are read and kept.
        const QString same = dir.filePath(QStringLiteral("same-size.css"));
        QVERIFY(writeFile(same, commented));
        const CSSFilePtr sized = load(same);
        QByteArray other = sized->generateCSS().toUtf8();
        other[0] = other[0] == 'x' ? 'y' : 'x';
        QVERIFY(writeFile(same, other));
        QVERIFY(sized->save());
        QCOMPARE(keeper->bytes, QList<QByteArray>{other});
    }

    // A revert or a reload loads a text afresh: it is judged again, and the
    // next save that rewrites it keeps it again.
    void revertAndReloadCountAfresh()
    {
        const auto keeper = installKeeper();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        QVERIFY(file->save());
        QCOMPARE(file->originalState(), OriginalState::Kept);

        // After the save the text regarded as on disk is the generated one.
        file->revert();
        QTRY_COMPARE(file->originalState(), OriginalState::Whole);
        QCOMPARE(file->droppedCounts(), CSSParser::DroppedCounts());

        QVERIFY(writeFile(path, commented));
        QSignalSpy rulesets(file.get(), &CSSFile::rulesetsChanged);
        file->reload(QString::fromUtf8(commented));
        QCOMPARE(rulesets.size(), 1);
        QCOMPARE(file->originalState(), OriginalState::BeforeSave);
        QCOMPARE(file->droppedCounts(), (CSSParser::DroppedCounts{1, 1}));
        QCOMPARE(file->originalContent(), QString::fromUtf8(commented));
        QCOMPARE(file->rulesets().size(), 2);
        QVERIFY(!file->hasUnsavedChanges());
        QVERIFY(file->save());
        QCOMPARE(keeper->paths.size(), 2);
        QCOMPARE(keeper->bytes.last(), commented);
    }

    // A revert before any save still has the loaded text; once a keep was
    // made of it and the write failed, the revert starts that text afresh.
    void revertBeforeSaveKeepsTheLoadedText()
    {
        const auto keeper = installKeeper();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        edit(file, QStringLiteral("blue"));
        QTRY_VERIFY(file->hasUnsavedChanges());
        file->revert();
        QTRY_VERIFY(!file->hasUnsavedChanges());
        QCOMPARE(file->originalState(), OriginalState::BeforeSave);
        QCOMPARE(file->droppedCounts(), (CSSParser::DroppedCounts{1, 1}));
        QCOMPARE(file->rulesets().first()->properties().first().value, QStringLiteral("red"));
        QVERIFY(file->save());
        QCOMPARE(keeper->bytes, QList<QByteArray>{commented});
    }

    void autoSaveGoesThroughTheKeeper()
    {
        const auto keeper = installKeeper();
        CSSFile::setAutoSavePolicy([] { return true; });
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        edit(file, QStringLiteral("blue"));
        QTRY_COMPARE_WITH_TIMEOUT(readFile(path), file->generateCSS().toUtf8(), 3000);
        QCOMPARE(keeper->bytes, QList<QByteArray>{commented});
        QCOMPARE(file->originalState(), OriginalState::Kept);
    }

    // A reload drops a pending auto-save, which would only write the text
    // that the reload has just replaced.
    void reloadDropsPendingAutoSave()
    {
        const auto keeper = installKeeper();
        CSSFile::setAutoSavePolicy([] { return true; });
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("theme.css"));
        QVERIFY(writeFile(path, commented));
        const CSSFilePtr file = load(path);
        edit(file, QStringLiteral("blue"));
        QTRY_VERIFY(file->hasUnsavedChanges());
        file->reload(QString::fromUtf8(commented));

        // A file in the generated form, changed after the reload: once its
        // own auto-save has written, the dropped one would have fired too.
        const QString clockPath = dir.filePath(QStringLiteral("clock.css"));
        QVERIFY(writeFile(clockPath, "clock {\n}\n"));
        const CSSFilePtr clock = load(clockPath);
        clock->rulesets().first()->setProperties(
            {CSSProperty(QStringLiteral("a"), QStringLiteral("b"))});
        clock->markChanged();
        QTRY_COMPARE_WITH_TIMEOUT(readFile(clockPath), QByteArray("clock {\n    a: b;\n}\n"), 5000);

        QCOMPARE(readFile(path), commented);
        QVERIFY(keeper->paths.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestOriginalKeeping)
#include "tst_originalkeeping.moc"
