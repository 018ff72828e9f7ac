// The menu commands through their actions and keys: what each does to the
// active window's workspace, and which are enabled as windows come, go and
// take turns being active.

#include "ShellTestSupport.h"

#include "canvas/widgets/CanvasView.h"
#include "canvas/widgets/NewRulesetSheet.h"
#include "canvas/widgets/NewVariableSheet.h"
#include "inspector/widgets/PropertyEditorView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/OmbrelCommands.h"
#include "shell/widgets/SidebarView.h"
#include "workspace/AppPreferences.h"
#include "workspace/UndoManager.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAction>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Ombrel;
using namespace ShellTest;
using WorkspaceTest::readFile;
using WorkspaceTest::writeFile;
using Command = OmbrelCommands::Command;

class TestMenuCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_dir;
    std::shared_ptr<Desktop> m_desktop;
    std::unique_ptr<OmbrelApp> m_app;

    QString path(const QString &relative) const { return m_dir->filePath(relative); }
    QAction *action(Command command) const { return m_app->commands().action(command); }

    void restart(QList<int> answers)
    {
        m_app.reset();
        m_desktop = std::make_shared<Desktop>();
        m_desktop->prompts = WorkspaceTest::PromptScript(std::move(answers));
        m_app = std::make_unique<OmbrelApp>(servicesFor(m_desktop));
    }

    MainWindow *activeWindowOn(const QString &folder)
    {
        MainWindow *window = m_app->openWindow(WindowConfig(false, folder));
        if (!activate(window))
            return nullptr;
        return window;
    }

private Q_SLOTS:
    void init()
    {
        WorkspaceTest::sessionStore().clear();
        AppPreferences::shared().setRestoreSession(true);
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(writeFile(path(QStringLiteral("site/a.css")), css(2)));
        QVERIFY(writeFile(path(QStringLiteral("site/b.css")), css(1)));
        QVERIFY(writeFile(path(QStringLiteral("site/empty.css")), QByteArray()));
        QVERIFY(writeFile(path(QStringLiteral("other/c.css")), css(3)));
        restart({});
    }

    void cleanup()
    {
        m_app.reset();
        QVERIFY(!WorkspaceRegistry::shared().any());
    }

    void everyItemHasItsKey_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QKeySequence>("key");
        const auto row = [](Command command, const char *label, const char *key) {
            QTest::newRow(label) << int(command) << QString::fromUtf8(label)
                                 << QKeySequence(QString::fromLatin1(key));
        };
        row(OmbrelCommands::NewWindow, "New Window", "Ctrl+Alt+N");
        row(OmbrelCommands::OpenFolder, "Open Folder...", "Ctrl+O");
        row(OmbrelCommands::NewFile, "New File", "Ctrl+Shift+N");
        row(OmbrelCommands::NewRuleset, "New Ruleset", "Ctrl+N");
        row(OmbrelCommands::NewProperty, "New Property", "Ctrl+K");
        row(OmbrelCommands::NewVariable, "New Variable", "Ctrl+Alt+K");
        row(OmbrelCommands::CloseProject, "Close Project", "Ctrl+Shift+W");
        row(OmbrelCommands::CloseWindow, "Close Window", "Ctrl+W");
        row(OmbrelCommands::RulesetsTab, "Rulesets", "Ctrl+1");
        row(OmbrelCommands::VariablesTab, "Variables", "Ctrl+2");
        row(OmbrelCommands::CodeTab, "Code", "Ctrl+3");
        row(OmbrelCommands::Filter, "Filter Rulesets", "Ctrl+F");
        row(OmbrelCommands::Help, "Ombrel Help", "");
        row(OmbrelCommands::Save, "Save", "Ctrl+S");
        row(OmbrelCommands::SaveAll, "Save All", "Ctrl+Shift+S");
        row(OmbrelCommands::RevertToSaved, "Revert to Saved…", "");
        row(OmbrelCommands::RestoreOriginal, "Restore Original...", "");
        row(OmbrelCommands::Quit, "Quit", "Ctrl+Q");
        row(OmbrelCommands::Preferences, "Preferences…", "Ctrl+,");
    }

    void everyItemHasItsKey()
    {
        QFETCH(int, command);
        QFETCH(QString, label);
        QFETCH(QKeySequence, key);
        QCOMPARE(action(Command(command))->text(), label);
        QCOMPARE(action(Command(command))->shortcut(), key);
    }

    void windowMenusHoldTheItemsInOrder()
    {
        MainWindow *window = m_app->openWindow(WindowConfig(true));
        const QList<QAction *> menus = window->menuBar()->actions();
        QCOMPARE(menus.size(), 4);
        QStringList fileItems;
        for (QAction *item : menus.first()->menu()->actions())
            fileItems.append(item->isSeparator() ? QStringLiteral("-") : item->text());
        QCOMPARE(fileItems.join(QLatin1Char('|')),
                 QStringLiteral("New Window|Open Folder...|-|New File|-|New Ruleset|New Property|"
                                "New Variable|-|Close Project|Close Window|-|Save|Save All|-|"
                                "Revert to Saved…|Restore Original...|-|Quit"));
        const QList<QAction *> editItems = menus.at(1)->menu()->actions();
        QCOMPARE(editItems.at(0), window->undoManager()->undoAction());
        QCOMPARE(editItems.at(1), window->undoManager()->redoAction());
        QVERIFY(editItems.contains(action(OmbrelCommands::Preferences)));
        QVERIFY(menus.at(2)->menu()->actions().contains(action(OmbrelCommands::Filter)));
        QVERIFY(menus.at(3)->menu()->actions().contains(action(OmbrelCommands::Help)));
    }

    void withoutWindowsOnlyWindowlessItemsWork()
    {
        m_app->commands().refresh();
        QVERIFY(!m_app->commands().activeWorkspace());
        for (const Command command :
             {OmbrelCommands::CloseWindow, OmbrelCommands::NewFile, OmbrelCommands::NewRuleset,
              OmbrelCommands::NewProperty, OmbrelCommands::NewVariable,
              OmbrelCommands::CloseProject, OmbrelCommands::RulesetsTab, OmbrelCommands::Filter,
              OmbrelCommands::Save, OmbrelCommands::SaveAll, OmbrelCommands::RevertToSaved,
              OmbrelCommands::RestoreOriginal})
            QVERIFY2(!action(command)->isEnabled(), qPrintable(action(command)->text()));
        QVERIFY(action(OmbrelCommands::NewWindow)->isEnabled());
        QVERIFY(action(OmbrelCommands::OpenFolder)->isEnabled());

        m_desktop->folderToChoose = path(QStringLiteral("other"));
        action(OmbrelCommands::OpenFolder)->trigger();
        QTRY_COMPARE(m_app->windows().size(), 1);
        QCOMPARE(m_desktop->folderRequests, 1);
        QCOMPARE(m_app->windows().first()->workspace()->folderPath(),
                 path(QStringLiteral("other")));
        QVERIFY(!m_app->windows().first()->config().startEmpty);

        action(OmbrelCommands::NewWindow)->trigger();
        QCOMPARE(m_app->windows().size(), 2);
    }

    void afterTheLastWindowClosedOnlyWindowlessItemsWork()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        window->workspace()->setSelectedRuleset(
            window->workspace()->selectedFile()->rulesets().first());
        makeDirty(window->workspace()->files().at(1));
        QTRY_VERIFY(action(OmbrelCommands::SaveAll)->isEnabled());
        QVERIFY(action(OmbrelCommands::NewProperty)->isEnabled());
        QTest::keyClick(window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!action(OmbrelCommands::SaveAll)->isEnabled());
        QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(m_desktop->prompts.asked().isEmpty());
        QVERIFY(m_app->windows().isEmpty());
        QVERIFY(!m_app->commands().activeWorkspace());
        QTRY_VERIFY(!action(OmbrelCommands::CloseWindow)->isEnabled());
        for (const Command command :
             {OmbrelCommands::NewFile, OmbrelCommands::NewRuleset, OmbrelCommands::NewProperty,
              OmbrelCommands::NewVariable, OmbrelCommands::CloseProject,
              OmbrelCommands::RulesetsTab, OmbrelCommands::VariablesTab, OmbrelCommands::CodeTab,
              OmbrelCommands::Filter, OmbrelCommands::Save, OmbrelCommands::SaveAll,
              OmbrelCommands::RevertToSaved})
            QVERIFY2(!action(command)->isEnabled(), qPrintable(action(command)->text()));
        QVERIFY(action(OmbrelCommands::NewWindow)->isEnabled());
        QVERIFY(action(OmbrelCommands::OpenFolder)->isEnabled());
        QVERIFY(action(OmbrelCommands::Help)->isEnabled());
        QCOMPARE(action(OmbrelCommands::Filter)->text(), QStringLiteral("Filter Rulesets"));

        // The folder chosen with no window open gets a window of its own.
        m_desktop->folderToChoose = path(QStringLiteral("other"));
        action(OmbrelCommands::OpenFolder)->trigger();
        QTRY_COMPARE(m_app->windows().size(), 1);
        QCOMPARE(m_desktop->folderRequests, 1);
        MainWindow *opened = m_app->windows().first();
        QCOMPARE(opened->workspace()->folderPath(), path(QStringLiteral("other")));
        QCOMPARE(opened->workspace()->selectedFile()->name(), QStringLiteral("c.css"));
        opened->close();
        QVERIFY(m_app->windows().isEmpty());
        action(OmbrelCommands::NewWindow)->trigger();
        QCOMPARE(m_app->windows().size(), 1);
        QCOMPARE(m_app->windows().first()->state(), WindowState::Welcome);
    }

    void newWindowIsEmptyThoughASessionCouldBeRestored()
    {
        MainWindow *first = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(first);
        QCOMPARE(WorkspaceTest::sessionStore().value(QStringLiteral("lastFolderPath")).toString(),
                 path(QStringLiteral("site")));
        QTest::keyClick(first, Qt::Key_N, Qt::ControlModifier | Qt::AltModifier);
        QCOMPARE(m_app->windows().size(), 2);
        MainWindow *fresh = m_app->windows().last();
        QVERIFY(fresh->config().startEmpty);
        QCOMPARE(fresh->state(), WindowState::Welcome);
        QVERIFY(!fresh->workspace()->hasFolder());
    }

    void openFolderWithAWindowOpensThere()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        m_desktop->folderToChoose = path(QStringLiteral("other"));
        QTest::keyClick(window, Qt::Key_O, Qt::ControlModifier);
        QTRY_COMPARE(window->workspace()->folderPath(), path(QStringLiteral("other")));
        QCOMPARE(m_app->windows().size(), 1);
    }

    void newPropertyOnTheCodeTabRaisesTheFlagAndShowsRulesets()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        Workspace *workspace = window->workspace();
        QVERIFY(!action(OmbrelCommands::NewProperty)->isEnabled());
        workspace->setSelectedRuleset(workspace->selectedFile()->rulesets().first());
        QTest::keyClick(window, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Code);
        QVERIFY(action(OmbrelCommands::NewProperty)->isEnabled());
        QTest::keyClick(window, Qt::Key_K, Qt::ControlModifier);
        QCOMPARE(workspace->canvasTab(), CanvasTab::Nodes);
        // The inspector that the rulesets tab brings takes the request.
        QVERIFY(!workspace->shouldAddProperty());
        PropertyEditorView *inspector = window->mainDetailView()->propertyEditor();
        QVERIFY(inspector);
        QVERIFY(inspector->controller().isAddingProperty());
    }

    void filterItemFollowsTheTab()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        QAction *filter = action(OmbrelCommands::Filter);
        QVERIFY(filter->isEnabled());
        QSignalSpy raised(window->workspace(), &Workspace::shouldFocusSearchChanged);
        QTest::keyClick(window, Qt::Key_F, Qt::ControlModifier);
        // The canvas takes the request at once and lowers the flag again.
        QVERIFY(!raised.isEmpty());
        QTRY_VERIFY(!window->workspace()->shouldFocusSearch());

        QTest::keyClick(window, Qt::Key_3, Qt::ControlModifier);
        QVERIFY(!filter->isEnabled());
        QCOMPARE(filter->text(), QStringLiteral("Filter Rulesets"));

        QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(window->workspace()->canvasTab(), CanvasTab::Variables);
        QCOMPARE(filter->text(), QStringLiteral("Filter Variables"));
        QVERIFY(!filter->isEnabled());

        QTest::keyClick(window, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window->workspace()->canvasTab(), CanvasTab::Nodes);
        QVERIFY(filter->isEnabled());
    }

    void filterVariablesFollowsTheDeclarationsOfAnUnsavedFile()
    {
        QVERIFY(writeFile(path(QStringLiteral("vars/v.css")), ":root { --a: 1px; }\n"));
        MainWindow *window = activeWindowOn(path(QStringLiteral("vars")));
        QVERIFY(window);
        Workspace *workspace = window->workspace();
        makeDirty(workspace->selectedFile());
        QTRY_VERIFY(workspace->selectedFile()->hasUnsavedChanges());
        QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
        QAction *filter = action(OmbrelCommands::Filter);
        QCOMPARE(filter->text(), QStringLiteral("Filter Variables"));
        QVERIFY(filter->isEnabled());

        const CSSRulesetPtr root = workspace->selectedFile()->rulesets().first();
        workspace->setSelectedVariablePropID(root->properties().first().id);
        workspace->setSelectedVariableRulesetID(root->id());
        workspace->setShouldDeleteVariable(true);
        QVERIFY(root->properties().isEmpty());
        // The file was unsaved already: only its declarations changed.
        QTRY_VERIFY(!filter->isEnabled());
        QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(root->properties().size(), 1);
        QTRY_VERIFY(filter->isEnabled());
    }

    // The menu reads the file's custom properties again when a ruleset
    // gains one, once the edits of the turn are in, whatever else changed.
    void filterVariablesFollowsTheEditsOfTheRulesets()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        QAction *filter = action(OmbrelCommands::Filter);
        QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
        QVERIFY(!filter->isEnabled());
        const CSSFilePtr file = window->workspace()->selectedFile();
        for (const CSSRulesetPtr &ruleset : file->rulesets())
            ruleset->setProperties({CSSProperty(QStringLiteral("--gap"), QStringLiteral("1px"))});
        QTRY_VERIFY(filter->isEnabled());
        file->rulesets().first()->setProperties({});
        file->rulesets().last()->setProperties({});
        QTRY_VERIFY(!filter->isEnabled());
    }

    void saveFollowsTheSelectedFileAndSaveAllTheWorkspace()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        Workspace *workspace = window->workspace();
        QCOMPARE(workspace->selectedFile()->name(), QStringLiteral("a.css"));
        makeDirty(WorkspaceTest::fileNamed(*workspace, QStringLiteral("b.css")));
        QTRY_VERIFY(action(OmbrelCommands::SaveAll)->isEnabled());
        QVERIFY(!action(OmbrelCommands::Save)->isEnabled());
        QVERIFY(!action(OmbrelCommands::RevertToSaved)->isEnabled());

        QTest::keyClick(window, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(readFile(path(QStringLiteral("site/b.css"))), css(1));
        QTest::keyClick(window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(readFile(path(QStringLiteral("site/b.css"))).contains(".added"));
        QTRY_VERIFY(!action(OmbrelCommands::SaveAll)->isEnabled());

        makeDirty(workspace->selectedFile());
        QTRY_VERIFY(action(OmbrelCommands::Save)->isEnabled());
        QTest::keyClick(window, Qt::Key_S, Qt::ControlModifier);
        QVERIFY(readFile(path(QStringLiteral("site/a.css"))).contains(".added"));
    }

    void revertAnsweredWithCancelChangesNothing()
    {
        restart({SecondButtonResponse, FirstButtonResponse});
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        const CSSFilePtr file = window->workspace()->selectedFile();
        makeDirty(file);
        QTRY_VERIFY(action(OmbrelCommands::RevertToSaved)->isEnabled());
        const qsizetype edited = file->rulesets().size();
        action(OmbrelCommands::RevertToSaved)->trigger();
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Revert \"a.css\" to saved version?"));
        QTest::qWait(0);
        QCOMPARE(file->rulesets().size(), edited);
        QVERIFY(file->hasUnsavedChanges());

        action(OmbrelCommands::RevertToSaved)->trigger();
        QTRY_VERIFY(!file->hasUnsavedChanges());
        QCOMPARE(file->rulesets().size(), edited - 1);
    }

    void itemsActOnTheActiveOfTwoWindows()
    {
        MainWindow *first = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(first);
        MainWindow *second = m_app->openWindow(WindowConfig(true));
        QVERIFY(activate(second));
        QCOMPARE(m_app->commands().activeWorkspace().get(), second->workspace());
        QVERIFY(!action(OmbrelCommands::NewFile)->isEnabled());
        QVERIFY(!action(OmbrelCommands::CloseProject)->isEnabled());

        QVERIFY(activate(first));
        QCOMPARE(m_app->commands().activeWorkspace().get(), first->workspace());
        QVERIFY(action(OmbrelCommands::NewFile)->isEnabled());

        QVERIFY(activate(second));
        QVERIFY(!action(OmbrelCommands::NewFile)->isEnabled());
        m_desktop->folderToChoose = path(QStringLiteral("other"));
        QTest::keyClick(second, Qt::Key_O, Qt::ControlModifier);
        QTRY_COMPARE(second->workspace()->folderPath(), path(QStringLiteral("other")));
        QTRY_VERIFY(action(OmbrelCommands::NewFile)->isEnabled());
        QTest::keyClick(second, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(second->workspace()->canvasTab(), CanvasTab::Variables);
        QCOMPARE(first->workspace()->canvasTab(), CanvasTab::Nodes);
        QTest::keyClick(second, Qt::Key_W, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(!second->workspace()->hasFolder());
        QVERIFY(first->workspace()->hasFolder());
    }

    void everyItemActsOnTheActiveWindowAndIsEnabledByIt()
    {
        restart({FirstButtonResponse});
        MainWindow *first = activeWindowOn(path(QStringLiteral("site")));
        MainWindow *second = activeWindowOn(path(QStringLiteral("other")));
        QVERIFY(first && second);
        Workspace *one = first->workspace();
        Workspace *two = second->workspace();
        makeDirty(one->selectedFile());
        one->setSelectedRuleset(one->selectedFile()->rulesets().first());
        one->setCanvasTab(CanvasTab::Code);
        QTRY_VERIFY(one->selectedFile()->hasUnsavedChanges());

        // The enabled states follow the window that is active.
        const auto enabled = [this](Command command) { return action(command)->isEnabled(); };
        QVERIFY(activate(first));
        QTRY_VERIFY(enabled(OmbrelCommands::Save));
        QVERIFY(enabled(OmbrelCommands::SaveAll) && enabled(OmbrelCommands::RevertToSaved));
        QVERIFY(enabled(OmbrelCommands::NewProperty));
        QVERIFY(!enabled(OmbrelCommands::Filter));
        QVERIFY(activate(second));
        QTRY_VERIFY(!enabled(OmbrelCommands::Save));
        QVERIFY(!enabled(OmbrelCommands::SaveAll) && !enabled(OmbrelCommands::RevertToSaved));
        QVERIFY(!enabled(OmbrelCommands::NewProperty));
        QVERIFY(enabled(OmbrelCommands::Filter));

        // Every item acts on the active window only.
        QSignalSpy firstFlags(one, &Workspace::changed);
        QTest::keyClick(second, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(two->canvasTab(), CanvasTab::Code);
        QTest::keyClick(second, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(two->canvasTab(), CanvasTab::Variables);
        QTest::keyClick(second, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(two->canvasTab(), CanvasTab::Nodes);
        QSignalSpy search(two, &Workspace::shouldFocusSearchChanged);
        QTest::keyClick(second, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(!search.isEmpty());
        QSignalSpy variable(two, &Workspace::shouldAddVariableChanged);
        QTest::keyClick(second, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(!variable.isEmpty());
        auto *canvas = qobject_cast<CanvasView *>(second->mainDetailView()->contentColumn());
        QVERIFY(canvas);
        QTRY_VERIFY(canvas->newVariableSheet() && canvas->newVariableSheet()->isVisible());
        canvas->newVariableSheet()->reject();
        QTRY_VERIFY(!canvas->newVariableSheet()->isVisible());
        QVERIFY(activate(second));
        two->setSelectedRuleset(two->selectedFile()->rulesets().first());
        QTRY_VERIFY(enabled(OmbrelCommands::NewProperty));
        QSignalSpy addProperty(two, &Workspace::shouldAddPropertyChanged);
        QTest::keyClick(second, Qt::Key_K, Qt::ControlModifier);
        QVERIFY(!addProperty.isEmpty());
        QVERIFY(second->mainDetailView()->propertyEditor()->controller().isAddingProperty());
        QSignalSpy sheet(two, &Workspace::shouldShowNewRulesetSheetChanged);
        QTest::keyClick(second, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(!sheet.isEmpty());
        QTRY_VERIFY(canvas->newRulesetSheet() && canvas->newRulesetSheet()->isVisible());
        canvas->newRulesetSheet()->reject();
        QTRY_VERIFY(!canvas->newRulesetSheet()->isVisible());
        QVERIFY(activate(second));

        makeDirty(two->selectedFile());
        QTRY_VERIFY(enabled(OmbrelCommands::Save));
        QTest::keyClick(second, Qt::Key_S, Qt::ControlModifier);
        QVERIFY(readFile(path(QStringLiteral("other/c.css"))).contains(".added"));
        makeDirty(two->selectedFile());
        QTRY_VERIFY(enabled(OmbrelCommands::SaveAll));
        QTest::keyClick(second, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!two->hasAnyUnsavedChanges());
        makeDirty(two->selectedFile());
        QTRY_VERIFY(enabled(OmbrelCommands::RevertToSaved));
        action(OmbrelCommands::RevertToSaved)->trigger();
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Revert \"c.css\" to saved version?"));
        QTRY_VERIFY(!two->hasAnyUnsavedChanges());

        QTest::keyClick(second, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("other/untitled.css"))));
        QVERIFY(!QFileInfo::exists(path(QStringLiteral("site/untitled.css"))));

        // The first window was left as it was.
        QVERIFY(firstFlags.isEmpty());
        QCOMPARE(one->canvasTab(), CanvasTab::Code);
        QVERIFY(one->selectedFile()->hasUnsavedChanges());
        QVERIFY(!one->shouldAddProperty() && !one->shouldShowNewRulesetSheet());
        QCOMPARE(readFile(path(QStringLiteral("site/a.css"))), css(2));

        QTest::keyClick(second, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(m_app->windows(), QList<MainWindow *>{first});
        QVERIFY(one->hasFolder());
    }

    void closeWindowGoesThroughTheWindowsPrompt()
    {
        restart({ThirdButtonResponse, SecondButtonResponse});
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        QVERIFY(action(OmbrelCommands::CloseWindow)->isEnabled());
        makeDirty(window->workspace()->selectedFile());
        QTRY_VERIFY(window->workspace()->hasAnyUnsavedChanges());
        QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QVERIFY(window->isOnScreen());
        QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(m_app->windows().isEmpty());
        QTRY_VERIFY(!action(OmbrelCommands::CloseWindow)->isEnabled());
    }

    void newFileAndNewRulesetAndNewVariable()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(QFileInfo::exists(path(QStringLiteral("site/untitled.css"))));
        QCOMPARE(window->workspace()->selectedFile()->name(), QStringLiteral("untitled.css"));
        // Its row enters rename by itself, with the base name selected.
        QLineEdit *field = nullptr;
        QTRY_VERIFY((field = window->sidebarView()->renameField(3)));
        QTRY_COMPARE(field->selectedText(), QStringLiteral("untitled"));
        QTest::keyClick(field, Qt::Key_Escape);
        QSignalSpy sheet(window->workspace(), &Workspace::shouldShowNewRulesetSheetChanged);
        QTest::keyClick(window, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(!sheet.isEmpty());
        auto *canvas = qobject_cast<CanvasView *>(window->mainDetailView()->contentColumn());
        QVERIFY(canvas);
        QTRY_VERIFY(canvas->newRulesetSheet() && canvas->newRulesetSheet()->isVisible());
        canvas->newRulesetSheet()->reject();
        QTRY_VERIFY(!canvas->newRulesetSheet()->isVisible());
        QSignalSpy variable(window->workspace(), &Workspace::shouldAddVariableChanged);
        QTest::keyClick(window, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier);
        QVERIFY(!variable.isEmpty());
    }

    void quitAsksOnceAndCancelKeepsEverything()
    {
        restart({ThirdButtonResponse, SecondButtonResponse});
        MainWindow *first = activeWindowOn(path(QStringLiteral("site")));
        MainWindow *second = m_app->openWindow(WindowConfig(false, path(QStringLiteral("other"))));
        QVERIFY(first && second);
        makeDirty(first->workspace()->selectedFile());
        makeDirty(second->workspace()->selectedFile());
        QTRY_VERIFY(second->workspace()->hasAnyUnsavedChanges());
        QTest::keyClick(first, Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(m_desktop->prompts.asked().size(), 1);
        QCOMPARE(m_desktop->prompts.asked().first().message,
                 QStringLiteral("Save changes to 2 files before quitting?"));
        QCOMPARE(m_app->windows().size(), 2);
        QCOMPARE(m_desktop->quitRequests, 0);
        QVERIFY(first->isOnScreen() && second->isOnScreen());
        QVERIFY(first->workspace()->selectedFile()->hasUnsavedChanges());
        QVERIFY(second->workspace()->selectedFile()->hasUnsavedChanges());
        QCOMPARE(readFile(path(QStringLiteral("other/c.css"))), css(3));

        // "Don't Save" closes every window without asking each.
        action(OmbrelCommands::Quit)->trigger();
        QCOMPARE(m_desktop->prompts.asked().size(), 2);
        QVERIFY(m_app->windows().isEmpty());
        QCOMPARE(m_desktop->quitRequests, 1);
        QCOMPARE(readFile(path(QStringLiteral("site/a.css"))), css(2));
    }

    void quitWithNothingUnsavedAsksNothing()
    {
        QVERIFY(activeWindowOn(path(QStringLiteral("site"))));
        action(OmbrelCommands::Quit)->trigger();
        QVERIFY(m_desktop->prompts.asked().isEmpty());
        QCOMPARE(m_desktop->quitRequests, 1);
    }

    void editMenuUndoesTheWindowsHistory()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        int undone = 0;
        window->undoManager()->registerUndo(window, [&undone] { ++undone; });
        window->undoManager()->setActionName(QStringLiteral("Edit Color"));
        QTest::qWait(0);
        QCOMPARE(window->undoManager()->undoAction()->text(), QStringLiteral("Undo Edit Color"));
        QTest::keyClick(window, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(undone, 1);
    }

    void textItemsActOnTheFocusedField()
    {
        MainWindow *window = activeWindowOn(path(QStringLiteral("site")));
        QVERIFY(window);
        window->sidebarView()->beginRename(0);
        QLineEdit *field = nullptr;
        QTRY_VERIFY((field = window->sidebarView()->renameField(0)));
        QTRY_VERIFY(field->hasFocus());
        action(OmbrelCommands::SelectAll)->trigger();
        QCOMPARE(field->selectedText(), QStringLiteral("a.css"));
        action(OmbrelCommands::Copy)->trigger();
        field->setCursorPosition(field->text().size());
        action(OmbrelCommands::Paste)->trigger();
        QCOMPARE(field->text(), QStringLiteral("a.cssa.css"));
        action(OmbrelCommands::SelectAll)->trigger();
        action(OmbrelCommands::Cut)->trigger();
        QCOMPARE(field->text(), QString());
    }

    void helpOpensTheDocumentation()
    {
        action(OmbrelCommands::Help)->trigger();
        QCOMPARE(m_desktop->openedUrls.size(), 1);
        QCOMPARE(m_desktop->openedUrls.first().path(), QStringLiteral("/ombrel/docs/index.html"));
    }

    void preferencesItemShowsTheSettingsWindow()
    {
        action(OmbrelCommands::Preferences)->trigger();
        QWidget *preferences = nullptr;
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QLatin1String("PreferencesView") && top->isVisible())
                preferences = top;
        }
        QVERIFY(preferences);
    }
};

QTEST_MAIN(TestMenuCommands)
#include "tst_menucommands.moc"
