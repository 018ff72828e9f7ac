#pragma once

#include <QString>

namespace Ombrel {

class OriginalStore;
class Workspace;

// Which menu items can act on the active workspace (none when no window is
// registered), and the one label that depends on it. Items that need no
// workspace ("New Window", "Open Folder...", "Ombrel Help") are always on.
struct MenuState
{
    bool newFile = false;
    bool newRuleset = false;
    bool newProperty = false;
    bool newVariable = false;
    bool closeProject = false;
    bool closeWindow = false;
    bool rulesetsTab = false;
    bool variablesTab = false;
    bool codeTab = false;
    bool filter = false;
    QString filterLabel;
    bool save = false;
    bool saveAll = false;
    bool revertToSaved = false;
    // The selected file has originals in the store.
    bool restoreOriginal = false;

    static MenuState of(const Workspace *workspace, const OriginalStore *originals = nullptr);
};

} // namespace Ombrel
