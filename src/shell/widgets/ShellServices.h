#pragma once

#include "workspace/WorkspaceServices.h"

#include <QUrl>

#include <functional>

namespace Ombrel {

// Everything the application asks of the desktop and of the person at it.
// Tests install their own answers; the application uses desktop().
struct ShellServices
{
    PromptHandler prompt;
    FolderChooser chooseFolder;
    FileRevealer reveal;
    std::function<void(const QUrl &)> openUrl;
    // Ends the event loop once every window has closed for a quit.
    std::function<void()> quitApplication;

    // Warning boxes, the folder dialog, the file manager, the browser.
    static ShellServices desktop();
};

} // namespace Ombrel
