#include "AppDelegate.h"

#include "shell/ClosePrompts.h"
#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QFileInfo>
#include <QTimer>

namespace Ombrel {

namespace {

// A folder that was opened a moment ago settles before its file is selected.
constexpr int openedFolderSelectionDelayMs = 200;

} // namespace

AppDelegate::AppDelegate(QObject *parent) : QObject(parent) {}

void AppDelegate::openFiles(const QStringList &paths)
{
    WorkspaceRegistry &registry = WorkspaceRegistry::shared();
    for (const QString &given : paths) {
        const QFileInfo info(given);
        if (info.suffix().toLower() != QLatin1String("css"))
            continue;
        const QString filePath = info.absoluteFilePath();
        const QString folder = info.absolutePath();

        if (const std::shared_ptr<Workspace> showing = registry.workspaceForFolder(folder)) {
            showing->selectFile(filePath);
            if (m_activator)
                m_activator(*showing);
            return;
        }

        const std::shared_ptr<Workspace> some = registry.any();
        if (some && !some->hasFolder()) {
            some->openFolder(folder);
            const std::weak_ptr<Workspace> target = some;
            QTimer::singleShot(openedFolderSelectionDelayMs, some.get(), [target, filePath] {
                if (const std::shared_ptr<Workspace> workspace = target.lock())
                    workspace->selectFile(filePath);
            });
            continue;
        }

        if (m_openWindowAction)
            m_openWindowAction(WindowConfig(false, folder, filePath));
        else
            m_pendingFilePath = filePath;
    }
}

bool AppDelegate::shouldTerminate()
{
    const WorkspaceRegistry &registry = WorkspaceRegistry::shared();
    if (!registry.hasAnyUnsaved())
        return true;
    const Prompt prompt = quitPrompt(registry.allUnsavedFiles());
    const int response = m_promptHandler ? m_promptHandler(prompt) : ThirdButtonResponse;
    if (response == FirstButtonResponse) {
        registry.saveAll();
        return true;
    }
    return response == SecondButtonResponse;
}

} // namespace Ombrel
