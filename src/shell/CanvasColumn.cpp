#include "CanvasColumn.h"

#include <QWidget>

namespace Ombrel {

QWidget *makeCanvasColumn(const CSSFilePtr &, Workspace *, UndoManager *, QWidget *parent)
{
    auto *pane = new QWidget(parent);
    pane->setObjectName(QStringLiteral("canvasColumn"));
    pane->setBackgroundRole(QPalette::Base);
    pane->setAutoFillBackground(true);
    return pane;
}

} // namespace Ombrel
