#pragma once

#include "workspace/OriginalStore.h"
#include "workspace/WorkspaceServices.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <optional>

namespace Ombrel {

// Lets the user pick one of a file's kept originals, given newest first, to
// restore; none when the user picks none.
using OriginalChooser = std::function<std::optional<KeptOriginal>(
    const QString &fileName, const QList<KeptOriginal> &originals)>;

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
    OriginalChooser chooseOriginal;

    // Warning boxes, the folder dialog, the file manager, the browser, the
    // list of kept originals.
    static ShellServices desktop();
};

} // namespace Ombrel
