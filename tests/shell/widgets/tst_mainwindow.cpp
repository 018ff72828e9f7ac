// Windows made by the application: their three states, the prompt before a
// window with unsaved files closes, the start with a file from the desktop,
// the editing layout's columns, and the preferences window.

#include "ShellTestSupport.h"

#include "shell/widgets/EmptyFolderView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/PreferencesView.h"
#include "shell/widgets/SidebarSplitView.h"
#include "shell/widgets/SidebarView.h"
#include "shell/widgets/WelcomeView.h"
#include "workspace/AppPreferences.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAction>
#include <QCheckBox>
#include <QFileOpenEvent>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolBar>

using namespace Ombrel;
using namespace ShellTest;
using WorkspaceTest::fileNamed;
using WorkspaceTest::readFile;
using WorkspaceTest::writeFile;

class TestMainWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;

    QString path(const QString &relative) const { return m_dir->filePath(relative); }

    MainWindow *windowOn(const QString &folder)
    {
        MainWindow *window = m_app->openWindow(WindowConfig(false, folder));
        return window;
    }

private Q_SLOTS:
    void init()
    {
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(QStringLiteral("site/a.css")), css(2)));
        QVERIFY(writeFile(path(QStringLiteral("site/b.css")), css(1, 1)));
        QVERIFY(writeFile(path(QStringLiteral("site/empty.css")), QByteArray()));
        QVERIFY(writeFile(path(QStringLiteral("last/z.css")), css(1)));
        QVERIFY(QDir().mkpath(path(QStringLiteral("bare"))));
        m_desktop = std::make_shared<Desktop>();
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    void cleanup()
    {
        m_app.reset();
        QVERIFY(!WorkspaceRegistry::shared().any());
        if (QTest::currentTestFailed())
            m_dir->setAutoRemove(false);
    }

    void windowStartsWithWelcomeAndRegistersItsWorkspace()
    {
        MainWindow *window = m_app->openWindow(WindowConfig(true));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QCOMPARE(window->state(), WindowState::Welcome);
        QVERIFY(window->welcomeView() && window->welcomeView()->isVisible());
        QCOMPARE(WorkspaceRegistry::shared().any().get(), window->workspace());
        QCOMPARE(window->windowTitle(), QStringLiteral("Ombrel"));
        QVERIFY(window->minimumSize() == QSize(900, 600));
    }

    void coldLaunchFileOpensItsFolderWithoutRestoringTheSession()
    {
        // A previous session stands ready to be restored.
        {
            Workspace previous;
            previous.openFolder(path(QStringLiteral("last")));
        }
        m_app->delegate().openFiles({path(QStringLiteral("site/b.css"))});
        QCOMPARE(m_app->delegate().pendingFilePath(), path(QStringLiteral("site/b.css")));
        MainWindow *window = m_app->openWindow(WindowConfig());
        QCOMPARE(window->workspace()->folderPath(), path(QStringLiteral("site")));
        QVERIFY(m_app->delegate().pendingFilePath().isEmpty());
        QTRY_COMPARE(window->workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QCOMPARE(window->state(), WindowState::Editing);
    }

    void laterFilesOpenAWindowThroughTheLastWindowsAction()
    {
        MainWindow *first = windowOn(path(QStringLiteral("last")));
        QVERIFY(m_app->delegate().hasOpenWindowAction());
        m_app->delegate().openFiles({path(QStringLiteral("site/b.css"))});
        QCOMPARE(m_app->windows().size(), 2);
        MainWindow *second = m_app->windows().last();
        QVERIFY(second != first);
        QCOMPARE(second->workspace()->folderPath(), path(QStringLiteral("site")));
        QTRY_COMPARE(second->workspace()->selectedFile()->name(), QStringLiteral("b.css"));
    }

    void filesAfterTheLastWindowClosedStillGetAWindow()
    {
        MainWindow *window = windowOn(path(QStringLiteral("last")));
        QVERIFY(window->close());
        QVERIFY(m_app->windows().isEmpty());
        m_app->delegate().openFiles({path(QStringLiteral("site/b.css"))});
        QVERIFY(m_app->delegate().pendingFilePath().isEmpty());
        QCOMPARE(m_app->windows().size(), 1);
        MainWindow *opened = m_app->windows().first();
        QCOMPARE(opened->workspace()->folderPath(), path(QStringLiteral("site")));
        QTRY_COMPARE(opened->workspace()->selectedFile()->name(), QStringLiteral("b.css"));
    }

    void twoFilesDroppedOnTheOneEmptyWindowOpenThereAndTheFirstWins()
    {
        MainWindow *window = m_app->openWindow(WindowConfig(true));
        QVERIFY(activate(window));
        m_app->delegate().openFiles(
            {path(QStringLiteral("site/b.css")), path(QStringLiteral("site/empty.css"))});
        QCOMPARE(m_app->windows().size(), 1);
        QCOMPARE(window->workspace()->folderPath(), path(QStringLiteral("site")));
        QCOMPARE(window->state(), WindowState::Editing);
        // The second file found the folder open and was selected at once;
        // the delayed selection of the first comes later and wins.
        QCOMPARE(window->workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
        QTRY_COMPARE(window->workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QCOMPARE(window->sidebarView()->listView()->currentIndex().row(), 1);
    }

    void aFileOfAnOpenFolderIsSelectedThereAndItsWindowComesForward()
    {
        QVERIFY(writeFile(path(QStringLiteral("more/m.css")), css(1)));
        MainWindow *showing = windowOn(path(QStringLiteral("site")));
        MainWindow *other = windowOn(path(QStringLiteral("last")));
        QVERIFY(activate(other));
        // Handed over as the desktop's file-open event.
        QFileOpenEvent event(path(QStringLiteral("site/empty.css")));
        QCoreApplication::sendEvent(qApp, &event);
        QCOMPARE(showing->workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
        QTRY_COMPARE(QApplication::activeWindow(), showing);
        QCOMPARE(other->workspace()->selectedFile()->name(), QStringLiteral("z.css"));

        // The walk ends at a file whose folder is open: the next file of the
        // same hand-over gets no window.
        QVERIFY(activate(other));
        m_app->delegate().openFiles(
            {path(QStringLiteral("site/b.css")), path(QStringLiteral("more/m.css"))});
        QCOMPARE(showing->workspace()->selectedFile()->name(), QStringLiteral("b.css"));
        QCOMPARE(m_app->windows().size(), 2);
        QTRY_COMPARE(QApplication::activeWindow(), showing);
    }

    void twoWindowsOnOneFolderSelectInTheFirstTheRegistryMeets()
    {
        MainWindow *first = windowOn(path(QStringLiteral("site")));
        MainWindow *second = windowOn(path(QStringLiteral("site")));
        const auto met =
            WorkspaceRegistry::shared().workspaceForFolder(path(QStringLiteral("site")));
        QVERIFY(met.get() == first->workspace() || met.get() == second->workspace());
        MainWindow *notMet = met.get() == first->workspace() ? second : first;
        m_app->delegate().openFiles({path(QStringLiteral("site/b.css"))});
        QCOMPARE(met->selectedFile()->name(), QStringLiteral("b.css"));
        QCOMPARE(notMet->workspace()->selectedFile()->name(), QStringLiteral("a.css"));
        QCOMPARE(m_app->windows().size(), 2);
    }

    void closingWithoutUnsavedFilesAsksNothing()
    {
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        QPointer<MainWindow> guard = window;
        QVERIFY(window->close());
        QVERIFY(m_desktop->prompts.asked().isEmpty());
        QVERIFY(!WorkspaceRegistry::shared().any());
        QTRY_VERIFY(!guard);
    }

    void closingWithCancelKeepsTheWindowAndItsChanges()
    {
        m_desktop->prompts = WorkspaceTest::PromptScript({ThirdButtonResponse});
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        makeDirty(window->workspace()->files().at(0));
        makeDirty(window->workspace()->files().at(1));
        QTRY_VERIFY(window->workspace()->files().at(1)->hasUnsavedChanges());
        QVERIFY(!window->close());
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Save changes to 2 files before closing?"));
        QVERIFY(window->isVisible());
        QVERIFY(window->isOnScreen());
        QVERIFY(window->workspace()->files().at(0)->hasUnsavedChanges());
        QVERIFY(window->workspace()->files().at(1)->hasUnsavedChanges());
        QCOMPARE(readFile(path(QStringLiteral("site/a.css"))), css(2));
        QCOMPARE(readFile(path(QStringLiteral("site/b.css"))), css(1, 1));
        QCOMPARE(WorkspaceRegistry::shared().any().get(), window->workspace());
    }

    void closingWithSaveWritesAndKeepsTheSession()
    {
        m_desktop->prompts = WorkspaceTest::PromptScript({FirstButtonResponse});
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        makeDirty(window->workspace()->files().at(0));
        QTRY_VERIFY(window->workspace()->files().at(0)->hasUnsavedChanges());
        QVERIFY(window->close());
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Save changes to \"a.css\" before closing?"));
        QVERIFY(readFile(path(QStringLiteral("site/a.css"))).contains(".added"));
        QCOMPARE(WorkspaceTest::sessionStore().value(QStringLiteral("lastFolderPath")).toString(),
                 path(QStringLiteral("site")));
    }

    void otherWindowEventsKeepTheirOwnHandling()
    {
        // Only the close is answered by the window's prompt; everything else,
        // such as the size limit of a resize, stays with the window itself.
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        window->resize(300, 200);
        QTRY_COMPARE(window->size(), QSize(900, 600));
        window->showMinimized();
        QTRY_VERIFY(window->isMinimized());
        QVERIFY(window->isOnScreen());
    }

    void sidebarButtonOnlyInTheEditingLayout()
    {
        MainWindow *window = m_app->openWindow(WindowConfig(true));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        auto *toolBar = window->findChild<QToolBar *>(QStringLiteral("windowToolBar"));
        QVERIFY(toolBar);
        QVERIFY(!toolBar->isVisible());
        QVERIFY(!window->toggleSidebarAction()->isVisible());

        window->workspace()->openFolder(path(QStringLiteral("bare")));
        QCOMPARE(window->state(), WindowState::EmptyFolder);
        QVERIFY(window->emptyFolderView()->isVisible());
        QCOMPARE(window->emptyFolderView()
                     ->findChild<QLabel *>(QStringLiteral("emptyFolderMessage"))
                     ->text(),
                 QStringLiteral("\"bare\" doesn't contain any CSS files."));
        QVERIFY(!toolBar->isVisible());

        window->workspace()->openFolder(path(QStringLiteral("site")));
        QCOMPARE(window->state(), WindowState::Editing);
        QVERIFY(toolBar->isVisible());
        QVERIFY(window->toggleSidebarAction()->isVisible());
    }

    void sidebarButtonCollapsesAndRestoresTheSidebar()
    {
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QVERIFY(!window->editingView()->isSidebarCollapsed());
        QCOMPARE(window->sidebarView()->width() >= 180 && window->sidebarView()->width() <= 300,
                 true);
        auto *toolBar = window->findChild<QToolBar *>(QStringLiteral("windowToolBar"));
        QTest::mouseClick(toolBar->widgetForAction(window->toggleSidebarAction()), Qt::LeftButton);
        QVERIFY(!window->showSidebar());
        QTRY_VERIFY(window->editingView()->isSidebarCollapsed());
        window->toggleSidebarAction()->trigger();
        QTRY_VERIFY(!window->editingView()->isSidebarCollapsed());
        QVERIFY(window->sidebarView()->width() >= 180);
    }

    void emptyFolderViewButtonsAct()
    {
        m_desktop->folderToChoose = path(QStringLiteral("site"));
        MainWindow *window = windowOn(path(QStringLiteral("bare")));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        auto *other = window->emptyFolderView()->findChild<QPushButton *>(
            QStringLiteral("openDifferentFolderButton"));
        QCOMPARE(other->text(), QStringLiteral("Open Different Folder…"));
        QTest::mouseClick(other, Qt::LeftButton);
        QTRY_COMPARE(window->workspace()->folderPath(), path(QStringLiteral("site")));
        QCOMPARE(m_desktop->folderRequests, 1);
    }

    void welcomeViewOpensAFolder()
    {
        m_desktop->folderToChoose = path(QStringLiteral("site"));
        MainWindow *window = m_app->openWindow(WindowConfig(true));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        auto *open =
            window->welcomeView()->findChild<QPushButton *>(QStringLiteral("openFolderButton"));
        QCOMPARE(open->text(), QStringLiteral("Open Folder…"));
        QTest::mouseClick(open, Qt::LeftButton);
        QTRY_COMPARE(window->state(), WindowState::Editing);
    }

    // --- Editing layout ---

    void filesWithoutSelectionShowWelcomeInTheContentColumn()
    {
        MainWindow *window = windowOn(path(QStringLiteral("bare")));
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QVERIFY(writeFile(path(QStringLiteral("bare/new.css")), css(1)));
        QTRY_COMPARE(window->state(), WindowState::Editing);
        QVERIFY(!window->workspace()->selectedFile());
        QVERIFY(qobject_cast<WelcomeView *>(window->mainDetailView()->contentColumn()));
        QVERIFY(!window->mainDetailView()->detailColumn());
    }

    void inspectorFollowsTabAndRulesets()
    {
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        QVERIFY(activate(window));
        MainDetailView *detail = window->mainDetailView();
        QCOMPARE(detail->contentColumn()->objectName(), QStringLiteral("canvasColumn"));
        QVERIFY(detail->detailColumn());
        QVERIFY(detail->detailColumn()->isVisible());
        QStringList texts;
        for (const QLabel *label : detail->detailColumn()->findChildren<QLabel *>())
            texts.append(label->text());
        QVERIFY(texts.contains(QStringLiteral("Select a Node")));
        QVERIFY(texts.contains(
            QStringLiteral("Click any node on the\ncanvas to edit its properties.")));
        QVERIFY(detail->detailColumn()->width() >= 260);

        // The tabs through their menu keys: the column is absent, not empty,
        // on the variables and code tabs.
        QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(window->workspace()->canvasTab(), CanvasTab::Variables);
        QVERIFY(!detail->detailColumn());
        QTest::keyClick(window, Qt::Key_3, Qt::ControlModifier);
        QVERIFY(!detail->detailColumn());
        QTest::keyClick(window, Qt::Key_1, Qt::ControlModifier);
        QVERIFY(detail->detailColumn());
        QVERIFY(detail->detailColumn()->isVisible());

        // A stylesheet without rulesets, chosen in the sidebar.
        QListView *list = window->sidebarView()->listView();
        const QRect emptyRow = list->visualRect(list->model()->index(2, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, emptyRow.center());
        QCOMPARE(window->workspace()->selectedFile()->name(), QStringLiteral("empty.css"));
        QCOMPARE(window->workspace()->canvasTab(), CanvasTab::Nodes);
        QVERIFY(!detail->detailColumn());
    }

    void newPropertyRequestBringsTheRulesetsTab()
    {
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        Workspace *workspace = window->workspace();
        workspace->setSelectedRuleset(workspace->selectedFile()->rulesets().first());
        workspace->setCanvasTab(CanvasTab::Code);
        workspace->setShouldAddProperty(true);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        QVERIFY(window->mainDetailView()->propertyEditor());
        // The inspector takes the flag at once, so every request is a new
        // rising edge.
        QVERIFY(!workspace->shouldAddProperty());
        workspace->setCanvasTab(CanvasTab::Variables);
        workspace->setShouldAddProperty(true);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        // The falling edge does nothing.
        workspace->setCanvasTab(CanvasTab::Variables);
        workspace->setShouldAddProperty(false);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Variables);

        // With no ruleset selected nobody takes the flag: while it stays up
        // there is no new edge, and the tab can leave.
        workspace->setSelectedRuleset({});
        workspace->setShouldAddProperty(true);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        QVERIFY(workspace->shouldAddProperty());
        workspace->setCanvasTab(CanvasTab::Variables);
        workspace->setShouldAddProperty(true);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Variables);
    }

    void titleShowsEditedUntilSavedOrReverted()
    {
        MainWindow *window = windowOn(path(QStringLiteral("site")));
        QCOMPARE(window->windowTitle(), QStringLiteral("a.css"));
        const CSSFilePtr file = window->workspace()->selectedFile();
        makeDirty(file);
        QTRY_COMPARE(window->windowTitle(), QStringLiteral("a.css — Edited"));
        window->workspace()->saveCurrentFile();
        QTRY_COMPARE(window->windowTitle(), QStringLiteral("a.css"));
        makeDirty(file);
        QTRY_COMPARE(window->windowTitle(), QStringLiteral("a.css — Edited"));
        window->workspace()->revertCurrentFile();
        QTRY_COMPARE(window->windowTitle(), QStringLiteral("a.css"));
    }

    // --- Preferences ---

    void preferencesShowTwoSectionsOfToggles()
    {
        PreferencesView *view = m_app->showPreferences();
        QCOMPARE(view->size(), QSize(420, 280));
        QCOMPARE(view->restoreSessionToggle()->text(),
                 QStringLiteral("Restore last session on launch"));
        QCOMPARE(view->autoSaveToggle()->text(), QStringLiteral("Auto-save on change"));
        QCOMPARE(view->showNodeStylingToggle()->text(),
                 QStringLiteral("Show ruleset node styling"));
        QCOMPARE(view->showColorSwatchesToggle()->text(), QStringLiteral("Show color swatches"));
        QCOMPARE(view->restoreSessionToggle()->isChecked(),
                 AppPreferences::shared().restoreSession());
    }

    void aToggleIsStoredAtOnceAndSeenEverywhere()
    {
        AppPreferences::shared().setShowNodeStyling(true);
        PreferencesView *view = m_app->showPreferences();
        PreferencesView second;
        QVERIFY(QTest::qWaitForWindowExposed(view));
        QVERIFY(second.showNodeStylingToggle()->isChecked());
        QTest::mouseClick(view->showNodeStylingToggle(), Qt::LeftButton);
        QVERIFY(!AppPreferences::shared().showNodeStyling());
        QCOMPARE(WorkspaceTest::sessionStore().value(AppPreferences::showNodeStylingKey),
                 QVariant(false));
        QVERIFY(!second.showNodeStylingToggle()->isChecked());
        QTest::mouseClick(view->showNodeStylingToggle(), Qt::LeftButton);
        QVERIFY(AppPreferences::shared().showNodeStyling());
    }

    void withTheAutoSaveToggleOnAChangedFileWritesItself()
    {
        MainWindow *window = windowOn(path(QStringLiteral("last")));
        QTRY_VERIFY(window->workspace()->selectedFile());
        const CSSFilePtr file = window->workspace()->selectedFile();
        PreferencesView *view = m_app->showPreferences();
        QVERIFY(QTest::qWaitForWindowExposed(view));
        QVERIFY(!view->autoSaveToggle()->isChecked());
        // On its box: the label is shorter than the row.
        const QPoint box(8, view->autoSaveToggle()->height() / 2);
        QTest::mouseClick(view->autoSaveToggle(), Qt::LeftButton, {}, box);
        QVERIFY(AppPreferences::shared().autoSave());

        file->rulesets().first()->setSelector(QStringLiteral(".saved-by-itself"));
        file->markChanged();
        QTRY_VERIFY(file->hasUnsavedChanges());
        QTRY_VERIFY_WITH_TIMEOUT(!file->hasUnsavedChanges(), 5000);
        QVERIFY(readFile(path(QStringLiteral("last/z.css"))).contains(".saved-by-itself"));

        QTest::mouseClick(view->autoSaveToggle(), Qt::LeftButton, {}, box);
        QVERIFY(!AppPreferences::shared().autoSave());
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
