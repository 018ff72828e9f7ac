// The session of the next launch: when its three keys are written, and what
// restoring them opens. A fresh Workspace stands for the next launch.

#include "WorkspaceTestSupport.h"

#include "workspace/AppPreferences.h"
#include "workspace/WindowConfig.h"
#include "workspace/WindowStart.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QFileSystemWatcher>
#include <QTemporaryDir>
#include <QTest>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray aCss = "a {\n    color: red;\n}\n";
const QByteArray twoRulesets = ".x {\n    top: 0;\n}\n\n.y {\n    top: 1px;\n}\n";

QString stored(const char *key)
{
    return sessionStore().value(QLatin1String(key)).toString();
}

// The first window of the next launch, with no file waiting to be opened.
std::shared_ptr<Workspace> relaunch()
{
    auto workspace = std::make_shared<Workspace>();
    QString pending;
    startWindow(workspace, WindowConfig(), pending);
    WorkspaceRegistry::shared().unregisterWorkspace(workspace.get());
    return workspace;
}

} // namespace

class TestSession : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    // A folder with a.css and m.css, the second holding .x and .y.
    QString makeSite(const QString &name)
    {
        const QString folder = m_dir.filePath(name);
        if (!writeFile(folder + QStringLiteral("/a.css"), aCss) ||
            !writeFile(folder + QStringLiteral("/m.css"), twoRulesets))
            return QString();
        return folder;
    }

private Q_SLOTS:
    void init()
    {
        sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
    }

    void cleanupTestCase() { AppPreferences::shared().setRestoreSession(true); }

    void selectionWritesTheThreeKeys()
    {
        const QString site = makeSite(QStringLiteral("keys"));
        Workspace workspace;
        workspace.openFolder(site);
        QCOMPARE(stored("lastFolderPath"), site);
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/a.css"));
        QVERIFY(!sessionStore().contains("lastSelectedRulesetSelector"));
        workspace.selectFile(site + QStringLiteral("/m.css"));
        workspace.setSelectedRuleset(workspace.selectedFile()->rulesets().last());
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/m.css"));
        QCOMPARE(stored("lastSelectedRulesetSelector"), ".y");
        workspace.setSelectedRuleset(nullptr);
        QVERIFY(!sessionStore().contains("lastSelectedRulesetSelector"));
        workspace.setSelectedFile(nullptr);
        QVERIFY(!sessionStore().contains("lastSelectedFilePath"));
        QCOMPARE(stored("lastFolderPath"), site);
    }

    void theSessionReachesTheDiskShortlyAfter()
    {
        const QString site = makeSite(QStringLiteral("disk"));
        const QString file = sessionStore().fileName();
        Workspace workspace;
        workspace.openFolder(site);
        // Another process reads the file itself, not this process's cache.
        QTRY_VERIFY(readFile(file).contains("lastSelectedFilePath=" +
                                            QFile::encodeName(site + QStringLiteral("/a.css"))));
        QVERIFY(readFile(file).contains("lastFolderPath=" + QFile::encodeName(site)));
        workspace.closeProject();
        QTRY_VERIFY(!readFile(file).contains("lastFolderPath"));
    }

    void aSelectorEditAloneDoesNotSaveTheSession()
    {
        const QString site = makeSite(QStringLiteral("edit"));
        Workspace workspace;
        workspace.openFolder(site);
        const CSSRulesetPtr ruleset = workspace.selectedFile()->rulesets().first();
        workspace.setSelectedRuleset(ruleset);
        ruleset->setSelector(QStringLiteral("renamed"));
        QCOMPARE(stored("lastSelectedRulesetSelector"), "a");
    }

    void selectingAFileWithNoFolderLeavesTheFolderKey()
    {
        sessionStore().setValue("lastFolderPath", QStringLiteral("/earlier/folder"));
        Workspace workspace;
        const auto file =
            std::make_shared<CSSFile>(QStringLiteral("/x/a.css"), CSSRulesetList(), QString());
        workspace.setSelectedFile(file);
        QCOMPARE(stored("lastFolderPath"), "/earlier/folder");
        QCOMPARE(stored("lastSelectedFilePath"), "/x/a.css");
    }

    void restoreReopensFolderFileAndRuleset()
    {
        const QString site = makeSite(QStringLiteral("restore"));
        {
            Workspace workspace;
            workspace.openFolder(site);
            workspace.selectFile(site + QStringLiteral("/m.css"));
            workspace.setSelectedRuleset(workspace.selectedFile()->rulesets().last());
            workspace.setCanvasTab(CanvasTab::Code);
        }
        const auto workspace = relaunch();
        QCOMPARE(workspace->folderPath(), site);
        QCOMPARE(workspace->selectedFile()->path(), site + QStringLiteral("/m.css"));
        QCOMPARE(workspace->selectedRuleset()->selector(), ".y");
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        // The restored folder is watched.
        QVERIFY(writeFile(site + QStringLiteral("/z.css"), aCss));
        QTRY_COMPARE(workspace->files().size(), 3);
    }

    void aRepeatedSelectorRestoresToTheFirst()
    {
        const QString site = makeSite(QStringLiteral("repeat"));
        QVERIFY(writeFile(site + QStringLiteral("/m.css"), ".x { top: 0 }\n.x { top: 9px }\n"));
        sessionStore().setValue("lastFolderPath", site);
        sessionStore().setValue("lastSelectedFilePath", site + QStringLiteral("/m.css"));
        sessionStore().setValue("lastSelectedRulesetSelector", QStringLiteral(".x"));
        const auto workspace = relaunch();
        QCOMPARE(workspace->selectedRuleset(), workspace->selectedFile()->rulesets().first());
    }

    void aFileThatHasGoneSelectsTheFirstAndIgnoresTheSelector()
    {
        const QString site = makeSite(QStringLiteral("file-gone"));
        sessionStore().setValue("lastFolderPath", site);
        sessionStore().setValue("lastSelectedFilePath", site + QStringLiteral("/gone.css"));
        sessionStore().setValue("lastSelectedRulesetSelector", QStringLiteral("a"));
        const auto workspace = relaunch();
        QCOMPARE(workspace->selectedFile()->path(), site + QStringLiteral("/a.css"));
        QVERIFY(!workspace->selectedRuleset());
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/a.css"));
    }

    void aSelectorThatHasGoneSelectsTheFileAlone()
    {
        const QString site = makeSite(QStringLiteral("selector-gone"));
        sessionStore().setValue("lastFolderPath", site);
        sessionStore().setValue("lastSelectedFilePath", site + QStringLiteral("/m.css"));
        sessionStore().setValue("lastSelectedRulesetSelector", QStringLiteral(".gone"));
        const auto workspace = relaunch();
        QCOMPARE(workspace->selectedFile()->path(), site + QStringLiteral("/m.css"));
        QVERIFY(!workspace->selectedRuleset());
    }

    void aFolderThatHasGoneOpensNothingAndKeepsTheKeys()
    {
        const QString gone = m_dir.filePath(QStringLiteral("never-made"));
        sessionStore().setValue("lastFolderPath", gone);
        sessionStore().setValue("lastSelectedFilePath", gone + QStringLiteral("/a.css"));
        const auto workspace = relaunch();
        QVERIFY(!workspace->hasFolder());
        QVERIFY(!workspace->findChild<QFileSystemWatcher *>());
        QCOMPARE(stored("lastFolderPath"), gone);
        QCOMPARE(stored("lastSelectedFilePath"), gone + QStringLiteral("/a.css"));
    }

    void valuesThatAreNotTextReadAsAbsent()
    {
        const QString site = makeSite(QStringLiteral("not-text"));
        sessionStore().setValue("lastFolderPath", QStringList{site, site});
        QVERIFY(!relaunch()->hasFolder());

        sessionStore().setValue("lastFolderPath", site);
        sessionStore().setValue("lastSelectedFilePath", QStringList{site + "/m.css", "x"});
        QCOMPARE(relaunch()->selectedFile()->path(), site + QStringLiteral("/a.css"));
    }

    void withThePreferenceOffTheKeysAreWrittenAndNothingRestored()
    {
        AppPreferences::shared().setRestoreSession(false);
        const QString site = makeSite(QStringLiteral("pref-off"));
        {
            Workspace workspace;
            workspace.openFolder(site);
            workspace.setSelectedRuleset(workspace.selectedFile()->rulesets().first());
        }
        QCOMPARE(stored("lastFolderPath"), site);
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/a.css"));
        QCOMPARE(stored("lastSelectedRulesetSelector"), "a");
        QVERIFY(!relaunch()->hasFolder());
    }

    void afterCloseProjectTheNextLaunchOpensNothing()
    {
        const QString site = makeSite(QStringLiteral("closed"));
        {
            Workspace workspace;
            workspace.openFolder(site);
            workspace.closeProject();
        }
        QVERIFY(AppPreferences::shared().restoreSession());
        QVERIFY(!relaunch()->hasFolder());
    }

    void closingTheOnlyWindowThenANewWindowIsEmptyButALaunchRestores()
    {
        const QString site = makeSite(QStringLiteral("new-window"));
        {
            auto window = std::make_shared<Workspace>();
            QString pending;
            startWindow(window, WindowConfig(false, site), pending);
            // The window closes: it leaves the registry and nothing more.
            WorkspaceRegistry::shared().unregisterWorkspace(window.get());
        }
        auto newWindow = std::make_shared<Workspace>();
        QString pending;
        startWindow(newWindow, WindowConfig(true), pending);
        WorkspaceRegistry::shared().unregisterWorkspace(newWindow.get());
        QVERIFY(!newWindow->hasFolder());
        QCOMPARE(relaunch()->folderPath(), site);
    }

    void withTwoWindowsTheLastSelectionWins()
    {
        const QString first = makeSite(QStringLiteral("first"));
        const QString second = makeSite(QStringLiteral("second"));
        Workspace one;
        Workspace two;
        one.openFolder(first);
        two.openFolder(second);
        two.selectFile(second + QStringLiteral("/m.css"));
        one.selectFile(first + QStringLiteral("/m.css"));
        one.setSelectedRuleset(one.selectedFile()->rulesets().first());
        QCOMPARE(relaunch()->folderPath(), first);

        two.setSelectedRuleset(two.selectedFile()->rulesets().last());
        const auto restored = relaunch();
        QCOMPARE(restored->folderPath(), second);
        QCOMPARE(restored->selectedFile()->path(), second + QStringLiteral("/m.css"));
        QCOMPARE(restored->selectedRuleset()->selector(), ".y");
    }

    void aRenameKeepsTheOldPathUntilTheSelectionChanges()
    {
        const QString site = makeSite(QStringLiteral("rename"));
        Workspace workspace;
        workspace.openFolder(site);
        workspace.selectFile(site + QStringLiteral("/m.css"));
        workspace.renameFile(workspace.selectedFile(), QStringLiteral("z"));
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/m.css"));
        QCOMPARE(relaunch()->selectedFile()->path(), site + QStringLiteral("/a.css"));

        workspace.setSelectedRuleset(nullptr);
        QCOMPARE(stored("lastSelectedFilePath"), site + QStringLiteral("/z.css"));
    }
};

QTEST_MAIN(TestSession)
#include "tst_session.moc"
