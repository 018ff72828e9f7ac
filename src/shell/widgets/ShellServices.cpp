#include "ShellServices.h"

#include "shell/widgets/DesktopServices.h"
#include "shell/widgets/RestoreOriginalDialog.h"

#include <QApplication>
#include <QDesktopServices>

namespace Ombrel {

ShellServices ShellServices::desktop()
{
    return {
        [](const Prompt &prompt) { return runWarningPrompt(prompt, QApplication::activeWindow()); },
        [](const FolderRequest &request) {
            return Ombrel::chooseFolder(request, QApplication::activeWindow());
        },
        revealInFileManager,
        [](const QUrl &url) { QDesktopServices::openUrl(url); },
        [] { QCoreApplication::quit(); },
        [](const QString &fileName, const QList<KeptOriginal> &originals) {
            return RestoreOriginalDialog::choose(fileName, originals, QApplication::activeWindow());
        },
    };
}

} // namespace Ombrel
