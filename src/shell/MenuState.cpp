#include "MenuState.h"

#include "workspace/Workspace.h"

#include <QCoreApplication>

#include <algorithm>

namespace Ombrel {

namespace {

bool hasCustomProperty(const CSSFile &file)
{
    return std::any_of(file.rulesets().cbegin(), file.rulesets().cend(), [](const auto &ruleset) {
        const CSSPropertyList &properties = ruleset->properties();
        return std::any_of(properties.cbegin(), properties.cend(), [](const CSSProperty &p) {
            return p.name.startsWith(QLatin1String("--"));
        });
    });
}

bool filterEnabled(const Workspace &workspace)
{
    const CSSFilePtr file = workspace.selectedFile();
    if (!file)
        return false;
    switch (workspace.canvasTab()) {
    case CanvasTab::Nodes:
        return !file->rulesets().isEmpty();
    case CanvasTab::Variables:
        return hasCustomProperty(*file);
    case CanvasTab::Code:
        break;
    }
    return false;
}

} // namespace

MenuState MenuState::of(const Workspace *workspace)
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
    state.filter = filterEnabled(*workspace);
    state.save = fileDirty;
    state.saveAll = workspace->hasAnyUnsavedChanges();
    state.revertToSaved = fileDirty;
    return state;
}

} // namespace Ombrel
