#include "WindowStart.h"

#include "workspace/Workspace.h"
#include "workspace/WorkspaceRegistry.h"

#include <QFileInfo>
#include <QTimer>

namespace Ombrel {

namespace {

constexpr int selectionDelayMs = 100;

void selectLater(Workspace &workspace, const QString &filePath)
{
    QTimer::singleShot(selectionDelayMs, &workspace,
                       [&workspace, filePath] { workspace.selectFile(filePath); });
}

} // namespace

void startWindow(const std::shared_ptr<Workspace> &workspace, const WindowConfig &config,
                 QString &pendingFilePath)
{
    WorkspaceRegistry::shared().registerWorkspace(workspace);
    if (config.folderURLPath) {
        workspace->openFolder(*config.folderURLPath);
        if (config.selectedFilePath)
            selectLater(*workspace, *config.selectedFilePath);
        return;
    }
    if (!pendingFilePath.isEmpty()) {
        const QString filePath = std::exchange(pendingFilePath, QString());
        workspace->openFolder(QFileInfo(filePath).absolutePath());
        selectLater(*workspace, filePath);
        return;
    }
    if (!config.startEmpty)
        workspace->restoreSession();
}

} // namespace Ombrel
