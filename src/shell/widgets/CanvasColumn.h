#pragma once

class QWidget;

namespace Ombrel {

class UndoManager;
class Workspace;

// The pane that shows the rulesets of the workspace's selected file; it
// follows the selection from file to file.
QWidget *makeCanvasColumn(Workspace *workspace, UndoManager *undoManager, QWidget *parent);

} // namespace Ombrel
