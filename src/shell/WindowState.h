#pragma once

#include <QString>

namespace Ombrel {

class Workspace;

// What a window shows, by the state of its workspace.
enum class WindowState {
    Welcome,     // no folder open
    EmptyFolder, // a folder without stylesheets
    Editing,     // sidebar, canvas and inspector
};

WindowState windowStateOf(const Workspace &workspace);

// The window's title: the selected file's name, followed by " — Edited" while
// it has unsaved changes; the folder's name when no file is selected, and the
// application's name when no folder is open.
QString windowTitle(const Workspace &workspace);

// "Edited" while the selected file has unsaved changes, else empty.
QString windowSubtitle(const Workspace &workspace);

// The inspector column stands beside the canvas only on the rulesets tab of a
// file that has rulesets.
bool showPropertyPanel(const Workspace &workspace);

} // namespace Ombrel
