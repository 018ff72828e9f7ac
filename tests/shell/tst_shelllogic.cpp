// The decisions of the application shell that need no window: the menu's
// enabling rules, the prompts, the sidebar's texts and tints, the window's
// state and title, the file list model, and the delegate that opens files
// from the desktop and decides on quitting.

#include "WorkspaceTestSupport.h"

#include "shell/AppDelegate.h"
#include "shell/ClosePrompts.h"
#include "shell/FileListModel.h"
#include "shell/FileRowText.h"
#include "shell/MenuState.h"
#include "shell/WindowState.h"
#include "workspace/AppPreferences.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Ombrel;
using namespace WorkspaceTest;

namespace {

const QByteArray oneRuleOneVar = ":root {\n    --brand: #5b6cff;\n}\n";
const QByteArray twoRules = "a {\n    color: red;\n}\nb {\n    margin: 0;\n}\n";

void makeDirty(const CSSFilePtr &file)
{
    file->setRulesets(file->rulesets() +
                      CSSRulesetList{std::make_shared<CSSRuleset>(QStringLiteral(".added"))});
    file->markChanged();
    QTRY_VERIFY(file->hasUnsavedChanges());
}

} // namespace

class TestShellLogic : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QList<std::shared_ptr<Workspace>> m_registered;

    QString folder(const QString &name) const { return m_dir.filePath(name); }

    std::shared_ptr<Workspace> registered(const QString &openFolder = {})
    {
        auto workspace = std::make_shared<Workspace>();
        if (!openFolder.isEmpty())
            workspace->openFolder(openFolder);
        WorkspaceRegistry::shared().registerWorkspace(workspace);
        m_registered.append(workspace);
        return workspace;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY(writeFile(folder(QStringLiteral("site/a.css")), twoRules));
        QVERIFY(writeFile(folder(QStringLiteral("site/b.css")), oneRuleOneVar));
        QVERIFY(writeFile(folder(QStringLiteral("site/empty.css")), QByteArray()));
        QVERIFY(writeFile(folder(QStringLiteral("site/sub/c.css")), twoRules));
        QVERIFY(writeFile(folder(QStringLiteral("other/d.css")), twoRules));
        QVERIFY(writeFile(folder(QStringLiteral("other/e.css")), twoRules));
        QVERIFY(writeFile(folder(QStringLiteral("caps/UPPER.CSS")), twoRules));
        QVERIFY(writeFile(folder(QStringLiteral("caps/style.scss")), twoRules));
        QVERIFY(QDir().mkpath(folder(QStringLiteral("nothing"))));
    }

    void init()
    {
        sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
    }

    void cleanup()
    {
        for (const auto &workspace : std::as_const(m_registered))
            WorkspaceRegistry::shared().unregisterWorkspace(workspace.get());
        m_registered.clear();
    }

    // --- Sidebar texts ---

    void countsLineNamesRulesetsAndVariables_data()
    {
        QTest::addColumn<qsizetype>("rulesets");
        QTest::addColumn<qsizetype>("variables");
        QTest::addColumn<QString>("expected");
        QTest::newRow("one and one") << qsizetype(1) << qsizetype(1) << "1 ruleset · 1 var";
        QTest::newRow("two and none") << qsizetype(2) << qsizetype(0) << "2 rulesets";
        QTest::newRow("none") << qsizetype(0) << qsizetype(0) << "0 rulesets";
        QTest::newRow("one and three") << qsizetype(1) << qsizetype(3) << "1 ruleset · 3 vars";
    }

    void countsLineNamesRulesetsAndVariables()
    {
        QFETCH(qsizetype, rulesets);
        QFETCH(qsizetype, variables);
        QFETCH(QString, expected);
        QCOMPARE(countsLine(rulesets, variables), expected);
    }

    void countsLineOfRealFiles()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        QCOMPARE(countsLine(*fileNamed(workspace, QStringLiteral("b.css"))),
                 QStringLiteral("1 ruleset · 1 var"));
        QCOMPARE(countsLine(*fileNamed(workspace, QStringLiteral("a.css"))),
                 QStringLiteral("2 rulesets"));
        QCOMPARE(countsLine(*fileNamed(workspace, QStringLiteral("empty.css"))),
                 QStringLiteral("0 rulesets"));
    }

    void renameSelectsTheBaseName()
    {
        QCOMPARE(baseNameLength(QStringLiteral("untitled.css")), 8);
        QCOMPARE(baseNameLength(QStringLiteral("theme.min.css")), 9);
        QCOMPARE(baseNameLength(QStringLiteral("README")), 6);
    }

    void rowTintsFollowSelectionFocusAndChanges()
    {
        QCOMPARE(rowIconTint(false, true, true), RowTint::Accent);
        QCOMPARE(rowIconTint(false, true, false), RowTint::Secondary);
        QCOMPARE(rowIconTint(true, true, true), RowTint::White);
        QCOMPARE(rowIconTint(true, false, false), RowTint::Accent);
        QCOMPARE(unsavedMarkTint(false, true), RowTint::Accent);
        QCOMPARE(unsavedMarkTint(true, true), RowTint::White);
        QCOMPARE(unsavedMarkTint(true, false), RowTint::Accent);
    }

    // --- Menu enabling ---

    void withoutWorkspaceOnlyTheAlwaysItemsAct()
    {
        const MenuState state = MenuState::of(nullptr);
        QVERIFY(!state.newFile && !state.newRuleset && !state.newProperty && !state.newVariable);
        QVERIFY(!state.closeProject && !state.closeWindow && !state.save && !state.saveAll);
        QVERIFY(!state.revertToSaved && !state.rulesetsTab && !state.filter);
        QCOMPARE(state.filterLabel, QStringLiteral("Filter Rulesets"));
    }

    void codeTabDisablesTheFilterAndKeepsItsRulesetsLabel()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        QVERIFY(workspace.selectedFile());
        QVERIFY(MenuState::of(&workspace).filter);
        workspace.setCanvasTab(CanvasTab::Code);
        const MenuState state = MenuState::of(&workspace);
        QVERIFY(!state.filter);
        QCOMPARE(state.filterLabel, QStringLiteral("Filter Rulesets"));
    }

    void variablesTabFilterNeedsACustomProperty()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        workspace.selectFile(folder(QStringLiteral("site/a.css")));
        workspace.setCanvasTab(CanvasTab::Variables);
        MenuState state = MenuState::of(&workspace);
        QCOMPARE(state.filterLabel, QStringLiteral("Filter Variables"));
        QVERIFY(!state.filter);
        workspace.selectFile(folder(QStringLiteral("site/b.css")));
        state = MenuState::of(&workspace);
        QVERIFY(state.filter);
    }

    void rulesetsTabFilterNeedsARuleset()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        workspace.selectFile(folder(QStringLiteral("site/empty.css")));
        QVERIFY(!MenuState::of(&workspace).filter);
    }

    void saveFollowsTheSelectedFileAndSaveAllAnyFile()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        workspace.selectFile(folder(QStringLiteral("site/a.css")));
        makeDirty(fileNamed(workspace, QStringLiteral("b.css")));
        const MenuState state = MenuState::of(&workspace);
        QVERIFY(!state.save);
        QVERIFY(!state.revertToSaved);
        QVERIFY(state.saveAll);
        makeDirty(workspace.selectedFile());
        QVERIFY(MenuState::of(&workspace).save);
        QVERIFY(MenuState::of(&workspace).revertToSaved);
    }

    void itemsNeedingASelectionFollowIt()
    {
        Workspace workspace;
        MenuState state = MenuState::of(&workspace);
        QVERIFY(state.closeWindow);
        QVERIFY(!state.newFile && !state.closeProject && !state.newRuleset);
        workspace.openFolder(folder(QStringLiteral("site")));
        state = MenuState::of(&workspace);
        QVERIFY(state.newFile && state.closeProject && state.newRuleset && state.newVariable);
        QVERIFY(!state.newProperty);
        workspace.setSelectedRuleset(workspace.selectedFile()->rulesets().first());
        QVERIFY(MenuState::of(&workspace).newProperty);
    }

    // --- Prompts ---

    void promptsNameOneFileAndCountMany()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        const CSSFileList one{fileNamed(workspace, QStringLiteral("a.css"))};
        const CSSFileList two{one.first(), fileNamed(workspace, QStringLiteral("b.css"))};
        QCOMPARE(quitPrompt(one).message,
                 QStringLiteral("Save changes to \"a.css\" before quitting?"));
        QCOMPARE(quitPrompt(two).message,
                 QStringLiteral("Save changes to 2 files before quitting?"));
        QCOMPARE(windowClosePrompt(one).message,
                 QStringLiteral("Save changes to \"a.css\" before closing?"));
        QCOMPARE(windowClosePrompt(two).message,
                 QStringLiteral("Save changes to 2 files before closing?"));
        QCOMPARE(quitPrompt(one).informativeText,
                 QStringLiteral("Your changes will be lost if you don't save."));
        QCOMPARE(quitPrompt(one).buttons,
                 (QStringList{QStringLiteral("Save"), QStringLiteral("Don't Save"),
                              QStringLiteral("Cancel")}));
        const Prompt revert = revertPrompt(*one.first());
        QCOMPARE(revert.message, QStringLiteral("Revert \"a.css\" to saved version?"));
        QCOMPARE(revert.informativeText, QStringLiteral("Your unsaved changes will be lost."));
        QCOMPARE(revert.buttons, (QStringList{QStringLiteral("Revert"), QStringLiteral("Cancel")}));
    }

    // --- Window state and title ---

    void windowStateAndTitleFollowTheWorkspace()
    {
        Workspace workspace;
        QCOMPARE(windowStateOf(workspace), WindowState::Welcome);
        QCOMPARE(windowTitle(workspace), QStringLiteral("Ombrel"));
        workspace.openFolder(folder(QStringLiteral("nothing")));
        QCOMPARE(windowStateOf(workspace), WindowState::EmptyFolder);
        QCOMPARE(windowTitle(workspace), QStringLiteral("nothing"));
        workspace.openFolder(folder(QStringLiteral("site")));
        QCOMPARE(windowStateOf(workspace), WindowState::Editing);
        QCOMPARE(windowTitle(workspace), QStringLiteral("a.css"));
        QCOMPARE(windowSubtitle(workspace), QString());
        makeDirty(workspace.selectedFile());
        QCOMPARE(windowSubtitle(workspace), QStringLiteral("Edited"));
        QCOMPARE(windowTitle(workspace), QStringLiteral("a.css — Edited"));
    }

    void propertyPanelShowsOnRulesetsOfAFileWithRulesets()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        QVERIFY(showPropertyPanel(workspace));
        workspace.setCanvasTab(CanvasTab::Variables);
        QVERIFY(!showPropertyPanel(workspace));
        workspace.setCanvasTab(CanvasTab::Nodes);
        workspace.selectFile(folder(QStringLiteral("site/empty.css")));
        QVERIFY(!showPropertyPanel(workspace));
    }

    // --- File list model ---

    void fileListModelFollowsFilesAndChanges()
    {
        Workspace workspace;
        FileListModel model(&workspace);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 0);
        workspace.openFolder(folder(QStringLiteral("site")));
        QCOMPARE(model.rowCount(), 4);
        QCOMPARE(model.index(0).data().toString(), QStringLiteral("a.css"));
        QCOMPARE(model.index(1).data(FileListModel::CountsRole).toString(),
                 QStringLiteral("1 ruleset · 1 var"));
        QCOMPARE(model.index(3).data().toString(), QStringLiteral("c.css"));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        makeDirty(fileNamed(workspace, QStringLiteral("b.css")));
        QVERIFY(!changed.isEmpty());
        QCOMPARE(changed.last().at(0).toModelIndex().row(), 1);
        QVERIFY(model.index(1).data(FileListModel::UnsavedRole).toBool());
        QCOMPARE(model.rowOf(workspace.files().at(2)->id()), 2);
    }

    // --- Files from the desktop ---

    void coldLaunchKeepsTheLastFileForTheFirstWindow()
    {
        AppDelegate delegate;
        delegate.openFiles(
            {folder(QStringLiteral("site/a.css")), folder(QStringLiteral("other/d.css"))});
        QCOMPARE(delegate.pendingFilePath(), folder(QStringLiteral("other/d.css")));
    }

    void twoFilesOfOneFolderOnAnEmptyWindowSelectTheFirst()
    {
        const auto workspace = registered();
        AppDelegate delegate;
        int activations = 0;
        delegate.setActivator([&](Workspace &) { ++activations; });
        delegate.openFiles(
            {folder(QStringLiteral("other/d.css")), folder(QStringLiteral("other/e.css"))});
        QCOMPARE(workspace->folderPath(), folder(QStringLiteral("other")));
        // The second found the folder open: selected at once, and activated.
        QCOMPARE(workspace->selectedFile()->name(), QStringLiteral("e.css"));
        QCOMPARE(activations, 1);
        // The delayed selection of the first runs later and wins.
        QTRY_COMPARE(workspace->selectedFile()->name(), QStringLiteral("d.css"));
    }

    void aFileOfAnOpenFolderIsSelectedThereAndActivates()
    {
        const auto workspace = registered(folder(QStringLiteral("other")));
        AppDelegate delegate;
        Workspace *activated = nullptr;
        delegate.setActivator([&](Workspace &w) { activated = &w; });
        int windowsOpened = 0;
        delegate.setOpenWindowAction([&](const WindowConfig &) { ++windowsOpened; });
        delegate.openFiles(
            {folder(QStringLiteral("other/e.css")), folder(QStringLiteral("site/a.css"))});
        QCOMPARE(workspace->selectedFile()->name(), QStringLiteral("e.css"));
        QCOMPARE(activated, workspace.get());
        // The walk stopped at the first file.
        QCOMPARE(windowsOpened, 0);
    }

    void twoWindowsOnOneFolderSelectInTheFirstMet()
    {
        const auto first = registered(folder(QStringLiteral("other")));
        const auto second = registered(folder(QStringLiteral("other")));
        const auto met =
            WorkspaceRegistry::shared().workspaceForFolder(folder(QStringLiteral("other")));
        const auto notMet = met == first ? second : first;
        AppDelegate delegate;
        delegate.openFiles({folder(QStringLiteral("other/e.css"))});
        QCOMPARE(met->selectedFile()->name(), QStringLiteral("e.css"));
        QCOMPARE(notMet->selectedFile()->name(), QStringLiteral("d.css"));
    }

    void aFileOutsideOpenFoldersGetsAWindow()
    {
        const auto workspace = registered(folder(QStringLiteral("site")));
        AppDelegate delegate;
        QList<WindowConfig> opened;
        delegate.setOpenWindowAction([&](const WindowConfig &config) { opened.append(config); });
        // A subfolder of an open folder counts as outside.
        delegate.openFiles({folder(QStringLiteral("site/sub/c.css"))});
        QCOMPARE(opened.size(), 1);
        QCOMPARE(opened.first().folderURLPath, folder(QStringLiteral("site/sub")));
        QCOMPARE(opened.first().selectedFilePath, folder(QStringLiteral("site/sub/c.css")));
        QVERIFY(!opened.first().startEmpty);
        QVERIFY(!opened.first().id.isNull());
    }

    void onlyStylesheetsOfAnyCaseAreTaken()
    {
        AppDelegate delegate;
        delegate.openFiles({folder(QStringLiteral("caps/style.scss"))});
        QVERIFY(delegate.pendingFilePath().isEmpty());
        delegate.openFiles({folder(QStringLiteral("caps/UPPER.CSS"))});
        QCOMPARE(delegate.pendingFilePath(), folder(QStringLiteral("caps/UPPER.CSS")));
    }

    // --- Quitting ---

    void quitWithNothingUnsavedAsksNothing()
    {
        registered(folder(QStringLiteral("site")));
        AppDelegate delegate;
        PromptScript prompts;
        delegate.setPromptHandler(prompts.handler());
        QVERIFY(delegate.shouldTerminate());
        QVERIFY(prompts.asked().isEmpty());
    }

    void quitAsksOnceForAllWindows()
    {
        const auto first = registered(folder(QStringLiteral("site")));
        const auto second = registered(folder(QStringLiteral("other")));
        makeDirty(first->files().first());
        AppDelegate delegate;
        PromptScript prompts({SecondButtonResponse});
        delegate.setPromptHandler(prompts.handler());
        QVERIFY(delegate.shouldTerminate());
        QCOMPARE(prompts.asked().size(), 1);
        QCOMPARE(prompts.asked().first().message,
                 QStringLiteral("Save changes to \"a.css\" before quitting?"));

        makeDirty(second->files().first());
        PromptScript twice({ThirdButtonResponse});
        delegate.setPromptHandler(twice.handler());
        QVERIFY(!delegate.shouldTerminate());
        QCOMPARE(twice.asked().first().message,
                 QStringLiteral("Save changes to 2 files before quitting?"));
        // "Cancel" leaves every change where it was.
        QVERIFY(first->files().first()->hasUnsavedChanges());
        QVERIFY(second->files().first()->hasUnsavedChanges());
        QCOMPARE(readFile(folder(QStringLiteral("site/a.css"))), twoRules);
    }

    void quitWithSaveWritesEveryWindowsFiles()
    {
        QTemporaryDir dir;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("one/x.css")), twoRules));
        QVERIFY(writeFile(dir.filePath(QStringLiteral("two/y.css")), twoRules));
        const auto first = registered(dir.filePath(QStringLiteral("one")));
        const auto second = registered(dir.filePath(QStringLiteral("two")));
        makeDirty(first->files().first());
        makeDirty(second->files().first());
        AppDelegate delegate;
        PromptScript prompts({FirstButtonResponse});
        delegate.setPromptHandler(prompts.handler());
        QVERIFY(delegate.shouldTerminate());
        QVERIFY(readFile(dir.filePath(QStringLiteral("one/x.css"))).contains(".added"));
        QVERIFY(readFile(dir.filePath(QStringLiteral("two/y.css"))).contains(".added"));
    }

    // --- Window close ---

    void windowCloseAsksOnlyWithUnsavedFiles()
    {
        Workspace workspace;
        workspace.openFolder(folder(QStringLiteral("site")));
        PromptScript prompts;
        QVERIFY(confirmWindowClose(&workspace, prompts.handler()));
        QVERIFY(prompts.asked().isEmpty());
        QVERIFY(confirmWindowClose(nullptr, prompts.handler()));

        makeDirty(workspace.files().first());
        PromptScript cancel({ThirdButtonResponse});
        QVERIFY(!confirmWindowClose(&workspace, cancel.handler()));
        QCOMPARE(cancel.asked().first().message,
                 QStringLiteral("Save changes to \"a.css\" before closing?"));
        QVERIFY(workspace.files().first()->hasUnsavedChanges());
        PromptScript dontSave({SecondButtonResponse});
        QVERIFY(confirmWindowClose(&workspace, dontSave.handler()));
        QCOMPARE(readFile(folder(QStringLiteral("site/a.css"))), twoRules);
    }
};

QTEST_GUILESS_MAIN(TestShellLogic)
#include "tst_shelllogic.moc"
