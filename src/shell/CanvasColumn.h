#pragma once

#include "model/CSSFile.h"

class QWidget;

namespace Ombrel {

class UndoManager;
class Workspace;

// The pane that shows the selected file's rulesets, made for one file.
QWidget *makeCanvasColumn(const CSSFilePtr &file, Workspace *workspace, UndoManager *undoManager,
                          QWidget *parent);

} // namespace Ombrel
