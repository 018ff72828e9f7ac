// Which files of a folder become stylesheets of the workspace, in which
// order, and that odd contents (huge, binary, not UTF-8, link loops) neither
// crash nor stall the load.

#include "WorkspaceTestSupport.h"

#include "workspace/StylesheetFolder.h"
#include "workspace/Workspace.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray someCss = "a { color: red }\n";

QStringList loadedPaths(const QString &folder)
{
    Workspace workspace;
    workspace.openFolder(folder);
    return relativePaths(workspace);
}

} // namespace

class TestFolderLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { sessionStore().clear(); }

    void stylesheetNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("counts");
        QTest::newRow("lower") << "a.css" << true;
        QTest::newRow("upper") << "FOO.CSS" << true;
        QTest::newRow("mixed") << "site.Css" << true;
        QTest::newRow("two dots") << "a.min.css" << true;
        QTest::newRow("backup") << "a.css.bak" << false;
        QTest::newRow("no dot") << "css" << false;
        QTest::newRow("other") << "a.scss" << false;
        QTest::newRow("bare extension") << ".css" << false;
    }

    void stylesheetNames()
    {
        QFETCH(QString, name);
        QFETCH(bool, counts);
        QCOMPARE(StylesheetFolder::isStylesheetName(name), counts);
    }

    void listsVisibleStylesheetsAtAnyDepth()
    {
        QTemporaryDir dir;
        for (const char *name :
             {"FOO.CSS", ".hidden.css", "sub/deep/a.css", ".git/x.css", ".cache/sub/y.css",
              "sub/.hidden/z.css", "a.css.bak", "notes.txt", "site.Css", "dir.css/inner.css"})
            QVERIFY(writeFile(dir.filePath(QString::fromLatin1(name)), someCss));
        // A folder named like a stylesheet is not one.
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("empty.css")));
        QCOMPARE(loadedPaths(dir.path()),
                 QStringList({"FOO.CSS", "dir.css/inner.css", "site.Css", "sub/deep/a.css"}));
    }

    void sortsOnThePlainPathString()
    {
        QTemporaryDir dir;
        for (const char *name : {"a/z.css", "B/a.css", "c.css", "a.css", "b/z.css", "file10.css",
                                 "file2.css", "Zed.css"})
            QVERIFY(writeFile(dir.filePath(QString::fromLatin1(name)), someCss));
        QCOMPARE(loadedPaths(dir.path()),
                 QStringList({"B/a.css", "Zed.css", "a.css", "a/z.css", "b/z.css", "c.css",
                              "file10.css", "file2.css"}));
    }

    void skipsFilesThatAreNotUtf8_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("loaded");
        QTest::newRow("ascii") << QByteArray("a { b: c }") << true;
        QTest::newRow("accents") << QByteArray("p::after { content: \"\xc3\xa9\xe2\x82\xac\" }")
                                 << true;
        QTest::newRow("emoji") << QByteArray("p { content: \"\xf0\x9f\x8e\xa8\" }") << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("latin-1") << QByteArray("p { content: \"\xe9\" }") << false;
        QTest::newRow("stray byte") << QByteArray("a { b: c }\xff") << false;
        QTest::newRow("cut at the end") << QByteArray("a { b: c }\xc3") << false;
        QTest::newRow("overlong") << QByteArray("a { b: \xc0\xaf }") << false;
        QTest::newRow("surrogate") << QByteArray("a { b: \xed\xa0\x80 }") << false;
    }

    void skipsFilesThatAreNotUtf8()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, loaded);
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("probe.css")), bytes));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("plain.css")), someCss));
        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(relativePaths(workspace),
                 loaded ? QStringList({"plain.css", "probe.css"}) : QStringList{"plain.css"});
        if (loaded) {
            const CSSFilePtr probe = fileNamed(workspace, QStringLiteral("probe.css"));
            QCOMPARE(probe->originalContent(), QString::fromUtf8(bytes));
        }
    }

    void skipsFilesThatCannotBeRead()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), someCss));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("missing")),
                            dir.filePath(QStringLiteral("dangling.css"))));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("self.css")),
                            dir.filePath(QStringLiteral("self.css"))));
        QCOMPARE(loadedPaths(dir.path()), QStringList{"a.css"});
    }

    void linkLoopsDoNotTrapTheWalk()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), someCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/b.css")), someCss));
        // Links to the folder itself, to its parent, and to a sibling folder:
        // none is entered, so sub/b.css is met once.
        QVERIFY(QFile::link(dir.path(), dir.filePath(QStringLiteral("sub/loop"))));
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("sub")),
                            dir.filePath(QStringLiteral("sub/again.css"))));
        QVERIFY(QFile::link(QStringLiteral(".."), dir.filePath(QStringLiteral("sub/up"))));
        QVERIFY(
            QFile::link(dir.filePath(QStringLiteral("sub")), dir.filePath(QStringLiteral("side"))));
        // A link to a stylesheet is listed and read like the file.
        QVERIFY(QFile::link(dir.filePath(QStringLiteral("a.css")),
                            dir.filePath(QStringLiteral("link.css"))));
        QCOMPARE(loadedPaths(dir.path()), QStringList({"a.css", "link.css", "sub/b.css"}));
        QCOMPARE(StylesheetFolder::directories(dir.path()),
                 QStringList({QDir::cleanPath(dir.path()), dir.filePath(QStringLiteral("sub"))}));
    }

    void aFolderOfTenThousandStylesheetsOpens()
    {
        QTemporaryDir dir;
        constexpr int count = 10000;
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("part-%1/sheet-%2.css").arg(i % 20).arg(i);
            QVERIFY(writeFile(dir.filePath(name),
                              QStringLiteral(".s%1 {\n    margin: %1px;\n}\n").arg(i).toUtf8()));
        }
        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(workspace.files().size(), count);
        QVERIFY(std::is_sorted(workspace.files().cbegin(), workspace.files().cend(),
                               [](const auto &x, const auto &y) { return x->path() < y->path(); }));
        QCOMPARE(workspace.selectedFile(), workspace.files().first());
        QCOMPARE(relativePaths(workspace).first(), "part-0/sheet-0.css");
        QCOMPARE(relativePaths(workspace).last(), "part-9/sheet-9989.css");
        const CSSFilePtr sample = fileNamed(workspace, QStringLiteral("part-7/sheet-4567.css"));
        QVERIFY(sample);
        QCOMPARE(sample->rulesets().size(), 1);
        QCOMPARE(sample->rulesets().first()->selector(), ".s4567");
        QCOMPARE(sample->rulesets().first()->properties().first().value, "4567px");
    }

    void aFileOfFiftyMegabytesLoads()
    {
        QTemporaryDir dir;
        // Rulesets of realistic shape, repeated to 50 MB.
        QByteArray chunk;
        for (int i = 0; i < 200; ++i)
            chunk += QStringLiteral(".card-%1 > .title:hover {\n    color: #%2;\n    margin: %3px "
                                    "auto;\n    background: url(\"img/%1.png\") no-repeat;\n}\n")
                         .arg(i)
                         .arg(i * 4099 % 0xffffff, 6, 16, QLatin1Char('0'))
                         .arg(i % 40)
                         .toUtf8();
        QByteArray big;
        big.reserve(50 * 1024 * 1024 + chunk.size());
        while (big.size() < 50 * 1024 * 1024)
            big += chunk;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("big.css")), big));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("small.css")), someCss));
        const qsizetype expectedRulesets = big.count('{');
        big.clear();

        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(relativePaths(workspace), QStringList({"big.css", "small.css"}));
        const CSSFilePtr file = workspace.files().first();
        QCOMPARE(file->rulesets().size(), expectedRulesets);
        QCOMPARE(file->rulesets().last()->properties().size(), 3);
    }

    void aHugeSingleValueLoads()
    {
        QTemporaryDir dir;
        // A stylesheet that embeds 50 MB of data in one value.
        QByteArray big = "@font-face { font-family: X; }\n.icon { src: url(data:font/woff2,";
        big += QByteArray(50 * 1024 * 1024, 'A');
        big += ") }\n";
        QVERIFY(writeFile(dir.filePath(QStringLiteral("font.css")), big));
        big.clear();
        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(workspace.files().size(), 1);
        const CSSRulesetList &rulesets = workspace.files().first()->rulesets();
        QCOMPARE(rulesets.size(), 1);
        QCOMPARE(rulesets.first()->selector(), ".icon");
        QVERIFY(rulesets.first()->properties().first().value.size() > 50 * 1024 * 1024);
    }

    void binaryFilesNeitherCrashNorStall()
    {
        QTemporaryDir dir;
        QByteArray noise(4 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator generator(20240611);
        generator.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
        noise[0] = '\xff';
        QVERIFY(writeFile(dir.filePath(QStringLiteral("noise.css")), noise));
        // Zero bytes are valid UTF-8: the file loads and has nothing to show.
        QVERIFY(writeFile(dir.filePath(QStringLiteral("zeros.css")), QByteArray(1 << 20, '\0')));
        // Valid UTF-8 that is no stylesheet: braces, quotes and comment marks
        // in random order.
        QByteArray junk;
        for (int i = 0; i < 1 << 20; ++i)
            junk += "{}:;\"'/*\\\n a"[generator.bounded(13)];
        QVERIFY(writeFile(dir.filePath(QStringLiteral("junk.css")), junk));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("ok.css")), someCss));

        Workspace workspace;
        workspace.openFolder(dir.path());
        QCOMPARE(relativePaths(workspace), QStringList({"junk.css", "ok.css", "zeros.css"}));
        QVERIFY(fileNamed(workspace, QStringLiteral("zeros.css"))->rulesets().isEmpty());
        QCOMPARE(fileNamed(workspace, QStringLiteral("ok.css"))->rulesets().size(), 1);
    }
};

QTEST_MAIN(TestFolderLoading)
#include "tst_folderloading.moc"
