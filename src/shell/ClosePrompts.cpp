#include "ClosePrompts.h"

#include "workspace/Workspace.h"

#include <QCoreApplication>

namespace Ombrel {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("Ombrel::ClosePrompts", text);
}

Prompt unsavedPrompt(const CSSFileList &unsaved, const char *oneFile, const char *manyFiles)
{
    const QString message = unsaved.size() == 1 ? tr(oneFile).arg(unsaved.first()->name())
                                                : tr(manyFiles).arg(unsaved.size());
    return {message,
            tr("Your changes will be lost if you don't save."),
            {tr("Save"), tr("Don't Save"), tr("Cancel")}};
}

} // namespace

Prompt quitPrompt(const CSSFileList &unsaved)
{
    return unsavedPrompt(unsaved, "Save changes to \"%1\" before quitting?",
                         "Save changes to %1 files before quitting?");
}

Prompt windowClosePrompt(const CSSFileList &unsaved)
{
    return unsavedPrompt(unsaved, "Save changes to \"%1\" before closing?",
                         "Save changes to %1 files before closing?");
}

bool confirmWindowClose(const Workspace *workspace, const PromptHandler &prompt)
{
    if (!workspace || !workspace->hasAnyUnsavedChanges())
        return true;
    CSSFileList unsaved;
    for (const CSSFilePtr &file : workspace->files()) {
        if (file->hasUnsavedChanges())
            unsaved.append(file);
    }
    const int response = prompt ? prompt(windowClosePrompt(unsaved)) : ThirdButtonResponse;
    if (response == FirstButtonResponse) {
        for (const CSSFilePtr &file : std::as_const(unsaved))
            file->save();
        return true;
    }
    return response == SecondButtonResponse;
}

Prompt revertPrompt(const CSSFile &file)
{
    return {tr("Revert \"%1\" to saved version?").arg(file.name()),
            tr("Your unsaved changes will be lost."),
            {tr("Revert"), tr("Cancel")}};
}

} // namespace Ombrel
