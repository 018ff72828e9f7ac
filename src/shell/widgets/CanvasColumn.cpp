#include "CanvasColumn.h"

#include "canvas/widgets/CanvasView.h"

namespace Ombrel {

QWidget *makeCanvasColumn(Workspace *workspace, UndoManager *undoManager, QWidget *parent)
{
    auto *canvas = new CanvasView(*workspace, undoManager, parent);
    canvas->setObjectName(QStringLiteral("canvasColumn"));
    return canvas;
}

} // namespace Ombrel
