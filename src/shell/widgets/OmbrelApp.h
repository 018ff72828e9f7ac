#pragma once

#include "shell/AppDelegate.h"
#include "shell/widgets/ShellServices.h"
#include "workspace/WindowConfig.h"

#include <QObject>
#include <QPointer>

#include <memory>

class QMenuBar;
class QSessionManager;

namespace Ombrel {

class MainWindow;
class OmbrelCommands;
class OriginalStore;
class PreferencesView;
class Workspace;

// The application: it makes every window from a WindowConfig, owns the
// delegate that takes files from the desktop, the menu commands and the
// preferences window, and runs the quit flow.
class OmbrelApp : public QObject
{
    Q_OBJECT

public:
    explicit OmbrelApp(ShellServices services, QObject *parent = nullptr);
    ~OmbrelApp() override;

    // Whether the application ends when its last window has closed. Only a
    // desktop that keeps a menu bar without windows lets it run on.
    static bool quitsWithLastWindow();

    const ShellServices &services() const { return m_services; }
    AppDelegate &delegate() { return *m_delegate; }
    OmbrelCommands &commands() { return *m_commands; }
    // Where every save keeps the bytes it replaces of a text it does not
    // keep whole: the "originals" folder of the application's data.
    OriginalStore &originals() { return *m_originals; }

    // Makes a window from the config and shows it.
    MainWindow *openWindow(const WindowConfig &config);
    // Keeps a window made by the caller among the application's and shows it.
    MainWindow *adoptWindow(MainWindow *window);
    // The windows on screen, oldest first.
    QList<MainWindow *> windows() const;
    // The window that shows this workspace; nullptr when none does.
    MainWindow *windowOf(const Workspace *workspace) const;

    // Fills a new window's menu bar.
    void installMenus(MainWindow *window);
    // Told by windows as they come on screen and leave.
    void windowsChanged();

    // One prompt for all windows; on "Save" or "Don't Save" every window
    // closes without asking again and the event loop ends. Returns whether
    // the application quits.
    bool quit();
    bool isQuitting() const { return m_quitting; }

    // Shows the preferences window, made on first use.
    PreferencesView *showPreferences();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void commitData(QSessionManager &manager);
    void activate(Workspace &workspace);

    ShellServices m_services;
    std::shared_ptr<OriginalStore> m_originals;
    AppDelegate *m_delegate;
    OmbrelCommands *m_commands;
    QList<QPointer<MainWindow>> m_windows;
    QPointer<PreferencesView> m_preferences;
    bool m_quitting = false;
};

} // namespace Ombrel
