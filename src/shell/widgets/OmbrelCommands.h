#pragma once

#include <QHash>
#include <QList>
#include <QMetaObject>
#include <QObject>

#include <memory>

class QAction;

namespace Ombrel {

class CSSFile;
class MainWindow;
class OmbrelApp;
class Workspace;

// The menu commands. Each acts on the active workspace: the one of the
// active window, or else an arbitrary registered one, or none. Their enabled
// states follow that workspace as it changes and as another window becomes
// active. The actions are shared by the menu bars of all windows, except
// the Edit menu's Undo and Redo, which belong to each window's history.
class OmbrelCommands : public QObject
{
    Q_OBJECT

public:
    enum Command {
        NewWindow,
        OpenFolder,
        NewFile,
        NewRuleset,
        NewProperty,
        NewVariable,
        CloseProject,
        CloseWindow,
        Save,
        SaveAll,
        RevertToSaved,
        RestoreOriginal,
        Quit,
        Cut,
        Copy,
        Paste,
        SelectAll,
        Preferences,
        RulesetsTab,
        VariablesTab,
        CodeTab,
        Filter,
        Help,
    };
    Q_ENUM(Command)

    explicit OmbrelCommands(OmbrelApp *app);

    QAction *action(Command command) const { return m_actions.value(command); }

    // The workspace the commands act on now.
    std::shared_ptr<Workspace> activeWorkspace() const;

    // Builds a window's menu bar from the shared actions and its own history.
    void populate(MainWindow *window);

    // Recomputes the enabled states and the filter's label.
    void refresh();

    // The documentation page opened by "Ombrel Help".
    static const char *const helpUrl;

private:
    QAction *make(Command command, const QString &text, const QKeySequence &shortcut,
                  void (OmbrelCommands::*run)());
    void followActiveWorkspace();
    void followFiles();
    void followRulesets();
    void scheduleRefresh();

    void newWindow();
    void openFolder();
    void newFile();
    void newRuleset();
    void newProperty();
    void newVariable();
    void closeProject();
    void closeWindow();
    void save();
    void saveAll();
    void revertToSaved();
    void restoreOriginal();
    void quit();
    void cut();
    void copy();
    void paste();
    void selectAll();
    void preferences();
    void showRulesets();
    void showVariables();
    void showCode();
    void filter();
    void help();

    OmbrelApp *m_app;
    QHash<Command, QAction *> m_actions;
    // The workspace whose changes the enabled states follow, and the
    // connections to it and to its files.
    std::weak_ptr<Workspace> m_followed;
    QList<QMetaObject::Connection> m_workspaceConnections;
    QList<QMetaObject::Connection> m_fileConnections;
    // On the variables tab the filter depends on the declarations of the
    // selected file's rulesets: the file whose rulesets are followed, whether
    // its list of rulesets changed since, and the connections.
    std::weak_ptr<CSSFile> m_rulesetsFile;
    bool m_rulesetsStale = false;
    QList<QMetaObject::Connection> m_rulesetConnections;
    bool m_refreshPending = false;
};

} // namespace Ombrel
