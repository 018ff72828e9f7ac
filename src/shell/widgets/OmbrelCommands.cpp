#include "OmbrelCommands.h"

#include "shell/ClosePrompts.h"
#include "shell/MenuState.h"
#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelApp.h"
#include "workspace/OriginalStore.h"
#include "workspace/UndoManager.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMetaEnum>
#include <QWindow>

namespace Ombrel {

const char *const OmbrelCommands::helpUrl = "https://ombrel.org/ombrel/docs/index.html";

OmbrelCommands::OmbrelCommands(OmbrelApp *app) : QObject(app), m_app(app)
{
    make(NewWindow, tr("New Window"), QKeySequence(tr("Ctrl+Alt+N")), &OmbrelCommands::newWindow);
    make(OpenFolder, tr("Open Folder..."), QKeySequence(tr("Ctrl+O")), &OmbrelCommands::openFolder);
    make(NewFile, tr("New File"), QKeySequence(tr("Ctrl+Shift+N")), &OmbrelCommands::newFile);
    make(NewRuleset, tr("New Ruleset"), QKeySequence(tr("Ctrl+N")), &OmbrelCommands::newRuleset);
    make(NewProperty, tr("New Property"), QKeySequence(tr("Ctrl+K")), &OmbrelCommands::newProperty);
    make(NewVariable, tr("New Variable"), QKeySequence(tr("Ctrl+Alt+K")),
         &OmbrelCommands::newVariable);
    make(CloseProject, tr("Close Project"), QKeySequence(tr("Ctrl+Shift+W")),
         &OmbrelCommands::closeProject);
    make(CloseWindow, tr("Close Window"), QKeySequence(tr("Ctrl+W")), &OmbrelCommands::closeWindow);
    make(Save, tr("Save"), QKeySequence(tr("Ctrl+S")), &OmbrelCommands::save);
    make(SaveAll, tr("Save All"), QKeySequence(tr("Ctrl+Shift+S")), &OmbrelCommands::saveAll);
    make(RevertToSaved, tr("Revert to Saved…"), {}, &OmbrelCommands::revertToSaved);
    make(RestoreOriginal, tr("Restore Original..."), {}, &OmbrelCommands::restoreOriginal);
    make(Quit, tr("Quit"), QKeySequence(tr("Ctrl+Q")), &OmbrelCommands::quit)
        ->setMenuRole(QAction::QuitRole);
    make(Cut, tr("Cut"), QKeySequence::Cut, &OmbrelCommands::cut);
    make(Copy, tr("Copy"), QKeySequence::Copy, &OmbrelCommands::copy);
    make(Paste, tr("Paste"), QKeySequence::Paste, &OmbrelCommands::paste);
    make(SelectAll, tr("Select All"), QKeySequence::SelectAll, &OmbrelCommands::selectAll);
    make(Preferences, tr("Preferences…"), QKeySequence(tr("Ctrl+,")), &OmbrelCommands::preferences)
        ->setMenuRole(QAction::PreferencesRole);
    make(RulesetsTab, tr("Rulesets"), QKeySequence(tr("Ctrl+1")), &OmbrelCommands::showRulesets);
    make(VariablesTab, tr("Variables"), QKeySequence(tr("Ctrl+2")), &OmbrelCommands::showVariables);
    make(CodeTab, tr("Code"), QKeySequence(tr("Ctrl+3")), &OmbrelCommands::showCode);
    make(Filter, tr("Filter Rulesets"), QKeySequence(tr("Ctrl+F")), &OmbrelCommands::filter);
    make(Help, tr("Ombrel Help"), {}, &OmbrelCommands::help);

    // The text commands act on whichever field holds the focus.
    for (const Command command : {Cut, Copy, Paste, SelectAll})
        m_actions.value(command)->setShortcutContext(Qt::WidgetWithChildrenShortcut);

    connect(&app->originals(), &OriginalStore::changed, this, &OmbrelCommands::refresh);
    connect(qApp, &QApplication::focusChanged, this, &OmbrelCommands::refresh);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &OmbrelCommands::refresh);
    refresh();
}

QAction *OmbrelCommands::make(Command command, const QString &text, const QKeySequence &shortcut,
                              void (OmbrelCommands::*run)())
{
    auto *action = new QAction(text, this);
    action->setObjectName(QString::fromLatin1(QMetaEnum::fromType<Command>().valueToKey(command)));
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, run);
    m_actions.insert(command, action);
    return action;
}

std::shared_ptr<Workspace> OmbrelCommands::activeWorkspace() const
{
    auto *window = qobject_cast<MainWindow *>(QApplication::activeWindow());
    if (window && m_app->windows().contains(window))
        return window->sharedWorkspace();
    return WorkspaceRegistry::shared().any();
}

void OmbrelCommands::populate(MainWindow *window)
{
    QMenuBar *bar = window->menuBar();
    const auto add = [this](QMenu *menu, std::initializer_list<int> commands) {
        for (const int command : commands) {
            if (command < 0)
                menu->addSeparator();
            else
                menu->addAction(m_actions.value(Command(command)));
        }
    };
    constexpr int divider = -1;

    QMenu *file = bar->addMenu(tr("&File"));
    add(file, {NewWindow, OpenFolder, divider, NewFile, divider, NewRuleset, NewProperty,
               NewVariable, divider, CloseProject, CloseWindow, divider, Save, SaveAll, divider,
               RevertToSaved, RestoreOriginal, divider, Quit});

    QMenu *edit = bar->addMenu(tr("&Edit"));
    edit->addAction(window->undoManager()->undoAction());
    edit->addAction(window->undoManager()->redoAction());
    add(edit, {divider, Cut, Copy, Paste, SelectAll, divider, Preferences});

    QMenu *view = bar->addMenu(tr("&View"));
    add(view, {divider, RulesetsTab, VariablesTab, CodeTab, divider, Filter, divider});

    QMenu *help = bar->addMenu(tr("&Help"));
    add(help, {Help});
}

void OmbrelCommands::followActiveWorkspace()
{
    const std::shared_ptr<Workspace> active = activeWorkspace();
    if (active == m_followed.lock())
        return;
    for (const QMetaObject::Connection &connection : std::as_const(m_workspaceConnections))
        disconnect(connection);
    m_workspaceConnections.clear();
    m_followed = active;
    followFiles();
    if (!active)
        return;
    m_workspaceConnections = {
        connect(active.get(), &Workspace::changed, this, &OmbrelCommands::refresh),
        connect(active.get(), &Workspace::filesChanged, this,
                [this] {
                    followFiles();
                    refresh();
                }),
    };
}

void OmbrelCommands::followFiles()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_fileConnections))
        disconnect(connection);
    m_fileConnections.clear();
    const std::shared_ptr<Workspace> followed = m_followed.lock();
    if (!followed)
        return;
    // "Save All" depends on every file of the workspace, not only the selected one.
    for (const CSSFilePtr &file : followed->files())
        m_fileConnections.append(connect(file.get(), &CSSFile::hasUnsavedChangesChanged, this,
                                         &OmbrelCommands::refresh));
}

// Edits of declarations reach no signal of the workspace: a file already
// unsaved stays so. They come in bursts, one per ruleset, and are answered
// together once the edit is over.
void OmbrelCommands::followRulesets()
{
    const std::shared_ptr<Workspace> followed = m_followed.lock();
    const CSSFilePtr file = followed && followed->canvasTab() == CanvasTab::Variables
                                ? followed->selectedFile()
                                : nullptr;
    if (file == m_rulesetsFile.lock() && !m_rulesetsStale)
        return;
    for (const QMetaObject::Connection &connection : std::as_const(m_rulesetConnections))
        disconnect(connection);
    m_rulesetConnections.clear();
    m_rulesetsFile = file;
    m_rulesetsStale = false;
    if (!file)
        return;
    m_rulesetConnections.append(
        connect(file.get(), &CSSFile::rulesetsChanged, this, [this] { m_rulesetsStale = true; }));
    for (const CSSRulesetPtr &ruleset : file->rulesets())
        m_rulesetConnections.append(connect(ruleset.get(), &CSSRuleset::propertiesChanged, this,
                                            &OmbrelCommands::scheduleRefresh));
}

void OmbrelCommands::scheduleRefresh()
{
    if (m_refreshPending)
        return;
    m_refreshPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_refreshPending = false;
            refresh();
        },
        Qt::QueuedConnection);
}

void OmbrelCommands::refresh()
{
    followActiveWorkspace();
    followRulesets();
    const std::shared_ptr<Workspace> active = activeWorkspace();
    const MenuState state = MenuState::of(active.get(), &m_app->originals());
    const auto enable = [this](Command command, bool on) {
        m_actions.value(command)->setEnabled(on);
    };
    enable(NewFile, state.newFile);
    enable(NewRuleset, state.newRuleset);
    enable(NewProperty, state.newProperty);
    enable(NewVariable, state.newVariable);
    enable(CloseProject, state.closeProject);
    enable(CloseWindow, state.closeWindow);
    enable(RulesetsTab, state.rulesetsTab);
    enable(VariablesTab, state.variablesTab);
    enable(CodeTab, state.codeTab);
    enable(Filter, state.filter);
    m_actions.value(Filter)->setText(state.filterLabel);
    enable(Save, state.save);
    enable(SaveAll, state.saveAll);
    enable(RevertToSaved, state.revertToSaved);
    enable(RestoreOriginal, state.restoreOriginal);
}

void OmbrelCommands::newWindow()
{
    m_app->openWindow(WindowConfig(true));
}

void OmbrelCommands::openFolder()
{
    if (const std::shared_ptr<Workspace> workspace = activeWorkspace()) {
        workspace->openFolderPanel();
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            const FolderChooser &choose = m_app->services().chooseFolder;
            const QString folder = choose ? choose({tr("Open Folder"), QString()}) : QString();
            if (!folder.isEmpty())
                m_app->openWindow(WindowConfig(false, folder));
        },
        Qt::QueuedConnection);
}

void OmbrelCommands::newFile()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).newFile)
        workspace->createNewFile();
}

void OmbrelCommands::newRuleset()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).newRuleset)
        workspace->setShouldShowNewRulesetSheet(true);
}

void OmbrelCommands::newProperty()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).newProperty)
        workspace->setShouldAddProperty(true);
}

void OmbrelCommands::newVariable()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).newVariable)
        workspace->setShouldAddVariable(true);
}

void OmbrelCommands::closeProject()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).closeProject)
        workspace->closeProject();
}

void OmbrelCommands::closeWindow()
{
    if (!activeWorkspace())
        return;
    if (auto *window = qobject_cast<MainWindow *>(QApplication::activeWindow()))
        window->close();
}

void OmbrelCommands::save()
{
    if (const auto workspace = activeWorkspace(); workspace && MenuState::of(workspace.get()).save)
        workspace->saveCurrentFile();
}

void OmbrelCommands::saveAll()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).saveAll)
        workspace->saveAllFiles();
}

void OmbrelCommands::revertToSaved()
{
    const auto workspace = activeWorkspace();
    const CSSFilePtr file = workspace ? workspace->selectedFile() : nullptr;
    if (!file)
        return;
    const PromptHandler &prompt = m_app->services().prompt;
    if (prompt && prompt(revertPrompt(*file)) == FirstButtonResponse)
        workspace->revertCurrentFile();
}

void OmbrelCommands::restoreOriginal()
{
    const auto workspace = activeWorkspace();
    const CSSFilePtr file = workspace ? workspace->selectedFile() : nullptr;
    const OriginalChooser &choose = m_app->services().chooseOriginal;
    if (!file || !choose)
        return;
    OriginalStore &store = m_app->originals();
    const QList<KeptOriginal> originals = store.originals(file->path());
    if (originals.isEmpty())
        return;
    if (const std::optional<KeptOriginal> chosen = choose(file->name(), originals))
        workspace->restoreOriginal(store, *chosen);
}

void OmbrelCommands::quit()
{
    m_app->quit();
}

namespace {

void sendToFocusedField(const char *slot)
{
    if (QWidget *focus = QApplication::focusWidget())
        QMetaObject::invokeMethod(focus, slot);
}

} // namespace

void OmbrelCommands::cut()
{
    sendToFocusedField("cut");
}

void OmbrelCommands::copy()
{
    sendToFocusedField("copy");
}

void OmbrelCommands::paste()
{
    sendToFocusedField("paste");
}

void OmbrelCommands::selectAll()
{
    sendToFocusedField("selectAll");
}

void OmbrelCommands::preferences()
{
    m_app->showPreferences();
}

void OmbrelCommands::showRulesets()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).rulesetsTab)
        workspace->setCanvasTab(CanvasTab::Nodes);
}

void OmbrelCommands::showVariables()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).variablesTab)
        workspace->setCanvasTab(CanvasTab::Variables);
}

void OmbrelCommands::showCode()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).codeTab)
        workspace->setCanvasTab(CanvasTab::Code);
}

void OmbrelCommands::filter()
{
    if (const auto workspace = activeWorkspace();
        workspace && MenuState::of(workspace.get()).filter)
        workspace->setShouldFocusSearch(true);
}

void OmbrelCommands::help()
{
    if (m_app->services().openUrl)
        m_app->services().openUrl(QUrl(QString::fromLatin1(helpUrl)));
}

} // namespace Ombrel
