#pragma once

#include "shell/WindowState.h"
#include "workspace/WindowConfig.h"

#include <QMainWindow>

#include <memory>

class QAction;
class QStackedWidget;
class QToolBar;

namespace Ombrel {

class EmptyFolderView;
class OmbrelApp;
class SidebarSplitView;
class SidebarView;
class MainDetailView;
class UndoManager;
class WelcomeView;
class Workspace;

// One window: it owns its workspace and undo history for its whole life and
// shows the welcome view, the empty-folder view or the editing layout by the
// state of the workspace. Its workspace is registered while it is on screen.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow(OmbrelApp *app, const WindowConfig &config, QWidget *parent = nullptr);
    ~MainWindow() override;

    Workspace *workspace() const { return m_workspace.get(); }
    std::shared_ptr<Workspace> sharedWorkspace() const { return m_workspace; }
    UndoManager *undoManager() const { return m_undoManager; }
    WindowState state() const { return m_state; }
    const WindowConfig &config() const { return m_config; }
    // From the moment the window came on screen until it closed.
    bool isOnScreen() const { return m_onScreen; }

    bool showSidebar() const { return m_showSidebar; }
    void setShowSidebar(bool show);
    // The toolbar button that shows and hides the sidebar; only the editing
    // layout offers it.
    QAction *toggleSidebarAction() const { return m_toggleSidebar; }

    // The views of the present state; nullptr until first shown.
    WelcomeView *welcomeView() const { return m_welcome; }
    EmptyFolderView *emptyFolderView() const { return m_emptyFolder; }
    SidebarSplitView *editingView() const { return m_editing; }
    SidebarView *sidebarView() const { return m_sidebar; }
    MainDetailView *mainDetailView() const { return m_mainDetail; }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void start();
    void updateState();
    void updateTitle();

    OmbrelApp *m_app;
    const WindowConfig m_config;
    std::shared_ptr<Workspace> m_workspace;
    UndoManager *m_undoManager;
    QStackedWidget *m_stack;
    QToolBar *m_toolBar;
    QAction *m_toggleSidebar;
    WelcomeView *m_welcome = nullptr;
    EmptyFolderView *m_emptyFolder = nullptr;
    SidebarSplitView *m_editing = nullptr;
    SidebarView *m_sidebar = nullptr;
    MainDetailView *m_mainDetail = nullptr;
    WindowState m_state = WindowState::Welcome;
    bool m_showSidebar = true;
    bool m_started = false;
    bool m_makesViews = false;
    bool m_onScreen = false;
};

} // namespace Ombrel
