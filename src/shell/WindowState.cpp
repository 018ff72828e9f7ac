#include "WindowState.h"

#include "workspace/Workspace.h"

#include <QCoreApplication>

namespace Ombrel {

WindowState windowStateOf(const Workspace &workspace)
{
    if (!workspace.hasFolder())
        return WindowState::Welcome;
    if (workspace.files().isEmpty())
        return WindowState::EmptyFolder;
    return WindowState::Editing;
}

QString windowSubtitle(const Workspace &workspace)
{
    const CSSFilePtr file = workspace.selectedFile();
    return file && file->hasUnsavedChanges()
               ? QCoreApplication::translate("Ombrel::WindowState", "Edited")
               : QString();
}

QString windowTitle(const Workspace &workspace)
{
    if (!workspace.hasFolder())
        return QStringLiteral("Ombrel");
    const CSSFilePtr file = workspace.selectedFile();
    if (!file)
        return workspace.folderName();
    const QString subtitle = windowSubtitle(workspace);
    return subtitle.isEmpty() ? file->name() : file->name() + QStringLiteral(" — ") + subtitle;
}

bool showPropertyPanel(const Workspace &workspace)
{
    const CSSFilePtr file = workspace.selectedFile();
    return workspace.canvasTab() == CanvasTab::Nodes && file && !file->rulesets().isEmpty();
}

} // namespace Ombrel
