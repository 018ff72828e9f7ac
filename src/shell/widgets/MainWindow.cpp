#include "MainWindow.h"

#include "shell/AppDelegate.h"
#include "shell/ClosePrompts.h"
#include "shell/widgets/EmptyFolderView.h"
#include "shell/widgets/MainDetailView.h"
#include "shell/widgets/OmbrelApp.h"
#include "shell/widgets/SidebarSplitView.h"
#include "shell/widgets/SidebarView.h"
#include "shell/widgets/WelcomeView.h"
#include "widgets/SymbolIcon.h"
#include "workspace/UndoManager.h"
#include "workspace/WindowStart.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QAction>
#include <QCloseEvent>
#include <QStackedWidget>
#include <QToolBar>

namespace Ombrel {

MainWindow::MainWindow(OmbrelApp *app, const WindowConfig &config, QWidget *parent)
    : QMainWindow(parent), m_app(app), m_config(config), m_workspace(std::make_shared<Workspace>()),
      m_undoManager(new UndoManager(this)), m_stack(new QStackedWidget(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(900, 600);
    resize(1280, 800);
    setCentralWidget(m_stack);

    const ShellServices &services = app->services();
    m_workspace->setPromptHandler(services.prompt);
    m_workspace->setFolderChooser(services.chooseFolder);
    if (services.reveal)
        m_workspace->setFileRevealer(services.reveal);

    m_toolBar = addToolBar(tr("Window"));
    m_toolBar->setObjectName(QStringLiteral("windowToolBar"));
    m_toolBar->setMovable(false);
    m_toolBar->setFloatable(false);
    m_toolBar->toggleViewAction()->setVisible(false);
    m_toggleSidebar = m_toolBar->addAction(
        symbolIcon(QStringLiteral("sidebar.left"), 16, palette().color(QPalette::WindowText)),
        tr("Toggle Sidebar"));
    m_toggleSidebar->setObjectName(QStringLiteral("toggleSidebarAction"));
    connect(m_toggleSidebar, &QAction::triggered, this, [this] { setShowSidebar(!m_showSidebar); });

    app->installMenus(this);

    connect(m_workspace.get(), &Workspace::changed, this, [this] {
        updateState();
        updateTitle();
    });
    updateState();
    updateTitle();
}

MainWindow::~MainWindow()
{
    WorkspaceRegistry::shared().unregisterWorkspace(m_workspace.get());
}

void MainWindow::setShowSidebar(bool show)
{
    m_showSidebar = show;
    if (m_editing)
        m_editing->setShowSidebar(show);
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (!m_started) {
        m_started = true;
        start();
    }
}

void MainWindow::start()
{
    AppDelegate &delegate = m_app->delegate();
    const QPointer<OmbrelApp> app = m_app;
    delegate.setOpenWindowAction([app](const WindowConfig &config) {
        if (app)
            app->openWindow(config);
    });
    m_onScreen = true;
    // The views are made once the folder is open and its file selected, for
    // the state the window first shows.
    startWindow(m_workspace, m_config, delegate.pendingFilePath());
    m_makesViews = true;
    updateState();
    m_app->windowsChanged();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_app->isQuitting() && !confirmWindowClose(m_workspace.get(), m_app->services().prompt)) {
        event->ignore();
        return;
    }
    event->accept();
    m_onScreen = false;
    WorkspaceRegistry::shared().unregisterWorkspace(m_workspace.get());
    QMainWindow::closeEvent(event);
    m_app->windowsChanged();
}

void MainWindow::updateState()
{
    m_state = windowStateOf(*m_workspace);
    m_toolBar->setVisible(m_state == WindowState::Editing);
    m_toggleSidebar->setVisible(m_state == WindowState::Editing);
    // The views are made as the window comes on screen: until then the state
    // may change again, as a launch opens its folder.
    if (!m_makesViews)
        return;
    QWidget *shown = nullptr;
    switch (m_state) {
    case WindowState::Welcome:
        if (!m_welcome) {
            m_welcome = new WelcomeView(m_workspace.get(), m_stack);
            m_stack->addWidget(m_welcome);
        }
        shown = m_welcome;
        break;
    case WindowState::EmptyFolder:
        if (!m_emptyFolder) {
            m_emptyFolder = new EmptyFolderView(m_workspace.get(), m_stack);
            m_stack->addWidget(m_emptyFolder);
        }
        shown = m_emptyFolder;
        break;
    case WindowState::Editing:
        if (!m_editing) {
            m_sidebar = new SidebarView(m_workspace.get());
            m_mainDetail = new MainDetailView(m_workspace.get(), m_undoManager);
            m_editing = new SidebarSplitView(m_sidebar, m_mainDetail, m_stack);
            m_stack->addWidget(m_editing);
            m_editing->setShowSidebar(m_showSidebar);
        }
        shown = m_editing;
        break;
    }
    m_stack->setCurrentWidget(shown);
}

void MainWindow::updateTitle()
{
    setWindowTitle(Ombrel::windowTitle(*m_workspace));
}

} // namespace Ombrel
