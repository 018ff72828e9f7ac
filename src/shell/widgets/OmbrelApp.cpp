#include "OmbrelApp.h"

#include "model/CSSFile.h"
#include "shell/widgets/MainWindow.h"
#include "shell/widgets/OmbrelCommands.h"
#include "shell/widgets/PreferencesView.h"
#include "workspace/AppPreferences.h"
#include "workspace/OriginalStore.h"

#include <QApplication>
#include <QFileOpenEvent>
#include <QSessionManager>

namespace Ombrel {

OmbrelApp::OmbrelApp(ShellServices services, QObject *parent)
    : QObject(parent), m_services(std::move(services)),
      m_originals(std::make_shared<OriginalStore>(OriginalStore::defaultFolder())),
      m_delegate(new AppDelegate(this)), m_commands(new OmbrelCommands(this))
{
    // Read before any window opens a folder: a settings store read while the
    // session has changes of its own in memory locks the file and writes them
    // out first, waiting twice for the disk on the way to the first frame.
    AppPreferences::shared();
    CSSFile::setAutoSavePolicy([] { return AppPreferences::shared().autoSave(); });
    OriginalStore::install(m_originals);
    m_delegate->setPromptHandler(m_services.prompt);
    m_delegate->setActivator([this](Workspace &workspace) { activate(workspace); });
    connect(qApp, &QGuiApplication::commitDataRequest, this, &OmbrelApp::commitData);
    // Where the desktop hands files over as events (macOS), they take the
    // same road as those of the command line.
    qApp->installEventFilter(this);
}

bool OmbrelApp::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::FileOpen) {
        m_delegate->openFiles({static_cast<QFileOpenEvent *>(event)->file()});
        return true;
    }
    return QObject::eventFilter(object, event);
}

OmbrelApp::~OmbrelApp()
{
    for (const QPointer<MainWindow> &window : std::as_const(m_windows))
        delete window.data();
    delete m_preferences.data();
}

bool OmbrelApp::quitsWithLastWindow()
{
#if defined(Q_OS_MACOS)
    return false;
#else
    // Without a window nothing of the application would be visible.
    return true;
#endif
}

MainWindow *OmbrelApp::openWindow(const WindowConfig &config)
{
    return adoptWindow(new MainWindow(this, config));
}

MainWindow *OmbrelApp::adoptWindow(MainWindow *window)
{
    m_windows.append(window);
    window->show();
    return window;
}

QList<MainWindow *> OmbrelApp::windows() const
{
    QList<MainWindow *> open;
    for (const QPointer<MainWindow> &window : m_windows) {
        if (window && window->isOnScreen())
            open.append(window);
    }
    return open;
}

MainWindow *OmbrelApp::windowOf(const Workspace *workspace) const
{
    for (MainWindow *window : windows()) {
        if (window->workspace() == workspace)
            return window;
    }
    return nullptr;
}

void OmbrelApp::installMenus(MainWindow *window)
{
    m_commands->populate(window);
}

void OmbrelApp::windowsChanged()
{
    m_windows.removeAll(nullptr);
    m_commands->refresh();
}

void OmbrelApp::activate(Workspace &workspace)
{
    if (MainWindow *window = windowOf(&workspace)) {
        window->raise();
        window->activateWindow();
    }
}

bool OmbrelApp::quit()
{
    if (!m_delegate->shouldTerminate())
        return false;
    m_quitting = true;
    for (MainWindow *window : windows())
        window->close();
    if (m_preferences)
        m_preferences->close();
    if (m_services.quitApplication)
        m_services.quitApplication();
    return true;
}

void OmbrelApp::commitData(QSessionManager &manager)
{
    // The session ends with the desktop's: the same single question, and
    // a "Cancel" asks the desktop to stay.
    if (manager.allowsInteraction() && !m_delegate->shouldTerminate()) {
        manager.cancel();
        return;
    }
    m_quitting = true;
}

PreferencesView *OmbrelApp::showPreferences()
{
    if (!m_preferences)
        m_preferences = new PreferencesView;
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
    return m_preferences;
}

} // namespace Ombrel
