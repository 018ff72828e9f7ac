#include "CanvasColumn.h"

#include "canvas/widgets/CanvasView.h"
#include "code/widgets/CodeEditorView.h"
#include "variables/widgets/VariablesPanel.h"

namespace Ombrel {

QWidget *makeCanvasColumn(Workspace *workspace, UndoManager *undoManager, QWidget *parent)
{
    auto *canvas = new CanvasView(*workspace, undoManager, parent);
    canvas->setObjectName(QStringLiteral("canvasColumn"));
    canvas->setPaneFactory(CanvasTab::Variables, [undoManager](CanvasController &controller) {
        return new VariablesPanel(controller, undoManager);
    });
    canvas->setPaneFactory(CanvasTab::Code, [](CanvasController &controller) {
        return new CodeEditorView(controller);
    });
    return canvas;
}

} // namespace Ombrel
