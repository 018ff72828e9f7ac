// The table of open workspaces, the window config and its coded form, and
// what a window opens when it comes on screen.

#include "WorkspaceTestSupport.h"

#include "workspace/AppPreferences.h"
#include "workspace/WindowConfig.h"
#include "workspace/WindowStart.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QJsonDocument>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray aCss = "a {\n    color: red;\n}\n";
const QByteArray bCss = "b {\n    margin: 0;\n}\n";

WorkspaceRegistry &registry()
{
    return WorkspaceRegistry::shared();
}

std::shared_ptr<Workspace> openOn(const QString &folder)
{
    auto workspace = std::make_shared<Workspace>();
    workspace->openFolder(folder);
    return workspace;
}

void makeDirty(const CSSFilePtr &file)
{
    file->rulesets().first()->setSelector(QStringLiteral("unsaved"));
    file->markChanged();
    QTRY_VERIFY(file->hasUnsavedChanges());
}

} // namespace

class TestWindowRegistry : public QObject
{
    Q_OBJECT

    QList<std::shared_ptr<Workspace>> m_registered;

    void add(const std::shared_ptr<Workspace> &workspace)
    {
        registry().registerWorkspace(workspace);
        m_registered.append(workspace);
    }

private Q_SLOTS:
    void init()
    {
        sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
    }

    void cleanup()
    {
        for (const auto &workspace : std::as_const(m_registered))
            registry().unregisterWorkspace(workspace.get());
        m_registered.clear();
        QVERIFY(!registry().any());
    }

    // --- WorkspaceRegistry ---

    void anEmptyRegistryHasNothing()
    {
        QVERIFY(!registry().any());
        QVERIFY(registry().allUnsavedFiles().isEmpty());
        QVERIFY(!registry().hasAnyUnsaved());
        QVERIFY(!registry().workspaceForFolder(QStringLiteral("/")));
        registry().saveAll();
    }

    void theRegistryHoldsItsWorkspacesUntilUnregistered()
    {
        std::weak_ptr<Workspace> weak;
        {
            auto workspace = std::make_shared<Workspace>();
            weak = workspace;
            registry().registerWorkspace(workspace);
        }
        QVERIFY(!weak.expired());
        QCOMPARE(registry().any(), weak.lock());
        registry().unregisterWorkspace(weak.lock().get());
        QVERIFY(weak.expired());
        QVERIFY(!registry().any());
    }

    void anyIsOneOfTheRegistered()
    {
        const auto first = std::make_shared<Workspace>();
        const auto second = std::make_shared<Workspace>();
        add(first);
        add(second);
        const auto any = registry().any();
        QVERIFY(any == first || any == second);
        registry().unregisterWorkspace(any.get());
        QCOMPARE(registry().any(), any == first ? second : first);
    }

    void unsavedFilesOfEveryWorkspaceAreGathered()
    {
        QTemporaryDir one;
        QTemporaryDir two;
        for (const QTemporaryDir *dir : {&one, &two}) {
            QVERIFY(writeFile(dir->filePath(QStringLiteral("a.css")), aCss));
            QVERIFY(writeFile(dir->filePath(QStringLiteral("b.css")), bCss));
            QVERIFY(writeFile(dir->filePath(QStringLiteral("c.css")), bCss));
        }
        const auto first = openOn(one.path());
        const auto second = openOn(two.path());
        add(first);
        add(second);
        QVERIFY(!registry().hasAnyUnsaved());
        makeDirty(fileNamed(*first, QStringLiteral("c.css")));
        makeDirty(fileNamed(*first, QStringLiteral("a.css")));
        makeDirty(fileNamed(*second, QStringLiteral("b.css")));
        QVERIFY(registry().hasAnyUnsaved());

        const CSSFileList unsaved = registry().allUnsavedFiles();
        QCOMPARE(unsaved.size(), 3);
        const CSSFileList fromFirst{fileNamed(*first, QStringLiteral("a.css")),
                                    fileNamed(*first, QStringLiteral("c.css"))};
        const CSSFileList fromSecond{fileNamed(*second, QStringLiteral("b.css"))};
        // Workspace after workspace, each in its own order.
        QVERIFY(unsaved == fromFirst + fromSecond || unsaved == fromSecond + fromFirst);

        registry().saveAll();
        QCOMPARE(readFile(one.filePath(QStringLiteral("a.css"))),
                 "unsaved {\n    color: red;\n}\n");
        QCOMPARE(readFile(two.filePath(QStringLiteral("b.css"))), "unsaved {\n    margin: 0;\n}\n");
        QTRY_VERIFY(!registry().hasAnyUnsaved());
        QVERIFY(registry().allUnsavedFiles().isEmpty());
    }

    void twoWindowsOnOneFolderShareNothing()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        const auto first = openOn(dir.path());
        const auto second = openOn(dir.path());
        add(first);
        add(second);
        QVERIFY(first->files().first() != second->files().first());
        makeDirty(first->files().first());
        makeDirty(second->files().first());
        // The same file unsaved in two windows counts twice.
        QCOMPARE(registry().allUnsavedFiles().size(), 2);
        QVERIFY(second->files().first()->rulesets().first() !=
                first->files().first()->rulesets().first());
    }

    void workspaceForFolderMatchesOnlyThatFolder()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("site/sub/a.css")), aCss));
        const QString site = dir.filePath(QStringLiteral("site"));
        const auto workspace = openOn(site);
        add(workspace);
        add(std::make_shared<Workspace>());
        QCOMPARE(registry().workspaceForFolder(site), workspace);
        QCOMPARE(registry().workspaceForFolder(site + QStringLiteral("/")), workspace);
        QCOMPARE(registry().workspaceForFolder(site + QStringLiteral("/sub/..")), workspace);
        QCOMPARE(registry().workspaceForFolder(site + QStringLiteral("/./")), workspace);
        QVERIFY(!registry().workspaceForFolder(site + QStringLiteral("/sub")));
        QVERIFY(!registry().workspaceForFolder(dir.path()));
        QVERIFY(!registry().workspaceForFolder(QString()));
        registry().unregisterWorkspace(workspace.get());
        QVERIFY(!registry().workspaceForFolder(site));
    }

    // --- WindowConfig ---

    void aConfigHasItsOwnIdAndTheDefaults()
    {
        const WindowConfig config;
        QVERIFY(!config.id.isNull());
        QCOMPARE(config.id.version(), QUuid::Random);
        QVERIFY(!config.startEmpty);
        QVERIFY(!config.folderURLPath);
        QVERIFY(!config.selectedFilePath);
        QVERIFY(WindowConfig().id != config.id);
    }

    void equalityAndHashCoverEveryField()
    {
        const WindowConfig config(false, QStringLiteral("/site"), QStringLiteral("/site/a.css"));
        const WindowConfig sameRequest(false, QStringLiteral("/site"),
                                       QStringLiteral("/site/a.css"));
        QVERIFY(config != sameRequest);
        WindowConfig copy = config;
        QVERIFY(copy == config);
        QCOMPARE(qHash(copy), qHash(config));
        copy.startEmpty = true;
        QVERIFY(copy != config);
        copy = config;
        copy.selectedFilePath.reset();
        QVERIFY(copy != config);
        copy = config;
        copy.folderURLPath = QString();
        QVERIFY(copy != config);
        QVERIFY(qHash(copy) != qHash(config));
        const QSet<WindowConfig> set{config, sameRequest, config};
        QCOMPARE(set.size(), 2);
    }

    void theCodedFormHasTheFourKeys()
    {
        const QUuid id = QUuid::fromString(QStringLiteral("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"));
        const WindowConfig config(false, QStringLiteral("/site"), QStringLiteral("/site/a.css"),
                                  id);
        const QJsonObject json = config.toJson();
        QCOMPARE(json.keys(),
                 QStringList({"folderURLPath", "id", "selectedFilePath", "startEmpty"}));
        QCOMPARE(json.value("id").toString(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
        QCOMPARE(json.value("startEmpty").toBool(true), false);
        QCOMPARE(json.value("folderURLPath").toString(), "/site");
        QCOMPARE(json.value("selectedFilePath").toString(), "/site/a.css");
        QCOMPARE(WindowConfig::fromJson(json), config);
    }

    void absentPathsAreNotWrittenAndReadBackAbsent()
    {
        const WindowConfig config(true);
        const QJsonObject json = config.toJson();
        QCOMPARE(json.keys(), QStringList({"id", "startEmpty"}));
        QCOMPARE(json.value("startEmpty").toBool(), true);
        const auto decoded =
            WindowConfig::fromJson(QJsonDocument::fromJson(QJsonDocument(json).toJson()).object());
        QVERIFY(decoded);
        QCOMPARE(*decoded, config);
        QVERIFY(!decoded->folderURLPath);
        QVERIFY(!decoded->selectedFilePath);
    }

    void decoding_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("valid");
        const QByteArray id = "\"id\": \"E621E1F8-C36C-495A-93FC-0C247A3E6E5F\"";
        QTest::newRow("minimal") << "{" + id + ", \"startEmpty\": false}" << true;
        QTest::newRow("lower-case id") << QByteArray("{\"id\": \"e621e1f8-c36c-495a-93fc-"
                                                     "0c247a3e6e5f\", \"startEmpty\": true}")
                                       << true;
        QTest::newRow("null paths") << "{" + id +
                                           ", \"startEmpty\": false, \"folderURLPath\": null, "
                                           "\"selectedFilePath\": null}"
                                    << true;
        QTest::newRow("other keys") << "{" + id + ", \"startEmpty\": false, \"x\": 1}" << true;
        QTest::newRow("no id") << QByteArray("{\"startEmpty\": false}") << false;
        QTest::newRow("bad id") << QByteArray("{\"id\": \"nope\", \"startEmpty\": false}") << false;
        QTest::newRow("no startEmpty") << "{" + id + "}" << false;
        QTest::newRow("startEmpty as text") << "{" + id + ", \"startEmpty\": \"false\"}" << false;
        QTest::newRow("path as number") << "{" + id +
                                               ", \"startEmpty\": false, "
                                               "\"folderURLPath\": 3}"
                                        << false;
    }

    void decoding()
    {
        QFETCH(QByteArray, json);
        QFETCH(bool, valid);
        const QJsonDocument document = QJsonDocument::fromJson(json);
        QVERIFY(document.isObject());
        const auto decoded = WindowConfig::fromJson(document.object());
        QCOMPARE(decoded.has_value(), valid);
        if (valid) {
            QCOMPARE(decoded->id,
                     QUuid::fromString(QStringLiteral("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")));
            QVERIFY(!decoded->folderURLPath);
        }
    }

    // --- What a window opens ---

    void aWindowForAFolderOpensItAndSelectsTheFileLater()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("b.css")), bCss));
        auto workspace = std::make_shared<Workspace>();
        m_registered.append(workspace);
        QString pending = dir.filePath(QStringLiteral("a.css"));
        startWindow(workspace,
                    WindowConfig(false, dir.path(), dir.filePath(QStringLiteral("b.css"))),
                    pending);
        QCOMPARE(registry().any(), workspace);
        QCOMPARE(workspace->folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(pending, dir.filePath(QStringLiteral("a.css")));
        QCOMPARE(workspace->selectedFile(), fileNamed(*workspace, QStringLiteral("a.css")));
        QTRY_COMPARE(workspace->selectedFile(), fileNamed(*workspace, QStringLiteral("b.css")));
    }

    void aWindowTakesTheFileWaitingToBeOpened()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/a.css")), aCss));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("sub/b.css")), bCss));
        auto workspace = std::make_shared<Workspace>();
        m_registered.append(workspace);
        QString pending = dir.filePath(QStringLiteral("sub/b.css"));
        startWindow(workspace, WindowConfig(), pending);
        QVERIFY(pending.isEmpty());
        QCOMPARE(workspace->folderPath(), dir.filePath(QStringLiteral("sub")));
        QTRY_COMPARE(workspace->selectedFile(), fileNamed(*workspace, QStringLiteral("b.css")));
    }

    void aNewEmptyWindowOpensNothing()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        sessionStore().setValue("lastFolderPath", dir.path());
        auto workspace = std::make_shared<Workspace>();
        m_registered.append(workspace);
        QString pending;
        startWindow(workspace, WindowConfig(true), pending);
        QCOMPARE(registry().any(), workspace);
        QVERIFY(!workspace->hasFolder());
    }

    void theFirstWindowRestoresTheSession()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("a.css")), aCss));
        sessionStore().setValue("lastFolderPath", dir.path());
        auto workspace = std::make_shared<Workspace>();
        m_registered.append(workspace);
        QString pending;
        startWindow(workspace, WindowConfig(), pending);
        QCOMPARE(workspace->folderPath(), QDir::cleanPath(dir.path()));
        QCOMPARE(workspace->files().size(), 1);
    }
};

QTEST_MAIN(TestWindowRegistry)
#include "tst_windowregistry.moc"
