#include "MenuState.h"

#include "canvas/CanvasController.h"
#include "workspace/OriginalStore.h"
#include "workspace/Workspace.h"

#include <QCoreApplication>

#include <algorithm>

namespace Ombrel {

namespace {} // namespace

MenuState MenuState::of(const Workspace *workspace, const OriginalStore *originals)
{
    MenuState state;
    const bool onVariables = workspace && workspace->canvasTab() == CanvasTab::Variables;
    state.filterLabel = onVariables
                            ? QCoreApplication::translate("Ombrel::MenuState", "Filter Variables")
                            : QCoreApplication::translate("Ombrel::MenuState", "Filter Rulesets");
    if (!workspace)
        return state;

    const CSSFilePtr file = workspace->selectedFile();
    const bool fileDirty = file && file->hasUnsavedChanges();
    state.newFile = workspace->hasFolder();
    state.newRuleset = bool(file);
    state.newProperty = bool(workspace->selectedRuleset());
    state.newVariable = bool(file);
    state.closeProject = workspace->hasFolder();
    state.closeWindow = true;
    state.rulesetsTab = bool(file);
    state.variablesTab = bool(file);
    state.codeTab = bool(file);
    state.filter = CanvasController::isFilterAvailable(*workspace);
    state.save = fileDirty;
    state.saveAll = workspace->hasAnyUnsavedChanges();
    state.revertToSaved = fileDirty;
    state.restoreOriginal = file && originals && originals->hasOriginals(file->path());
    return state;
}

} // namespace Ombrel
