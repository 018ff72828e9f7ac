#pragma once

#include "workspace/WindowConfig.h"
#include "workspace/WorkspaceServices.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace Ombrel {

class Workspace;

// The application's answers to the two requests that arrive from outside any
// window: stylesheets handed over by the desktop, and the wish to quit.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    using OpenWindowAction = std::function<void(const WindowConfig &)>;

    explicit AppDelegate(QObject *parent = nullptr);

    // Opens a new window; every window that comes on screen installs its own,
    // and the last one stays usable after every window has closed.
    void setOpenWindowAction(OpenWindowAction action) { m_openWindowAction = std::move(action); }
    bool hasOpenWindowAction() const { return bool(m_openWindowAction); }

    // A stylesheet that arrived before any window could take it; the first
    // window takes it and clears it.
    QString &pendingFilePath() { return m_pendingFilePath; }

    // Brings the application to the front after a file was selected in a
    // window that already shows its folder.
    void setActivator(std::function<void(Workspace &)> activator)
    {
        m_activator = std::move(activator);
    }

    void setPromptHandler(PromptHandler handler) { m_promptHandler = std::move(handler); }

    // Opens each ".css" path (any case) in a window on its parent folder,
    // one at a time, in order; other paths are skipped. A path whose folder
    // is open already is selected there and ends the walk.
    void openFiles(const QStringList &paths);

    // Whether the application may quit now: with unsaved files anywhere, one
    // prompt for all windows decides, and "Save" saves them all first.
    bool shouldTerminate();

private:
    OpenWindowAction m_openWindowAction;
    QString m_pendingFilePath;
    std::function<void(Workspace &)> m_activator;
    PromptHandler m_promptHandler;
};

} // namespace Ombrel
