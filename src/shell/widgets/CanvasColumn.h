#pragma once

class QWidget;

namespace Ombrel {

class UndoManager;
class Workspace;

// The pane that shows the workspace's selected file, its rulesets and its
// variables; it follows the selection from file to file.
QWidget *makeCanvasColumn(Workspace *workspace, UndoManager *undoManager, QWidget *parent);

} // namespace Ombrel
