#include "InspectorPlaceholder.h"

#include "widgets/SymbolIcon.h"
#include "widgets/ViewStyle.h"

#include <QLabel>
#include <QVBoxLayout>

namespace Ombrel {

InspectorPlaceholder::InspectorPlaceholder(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("InspectorPlaceholder"));
    setBackgroundRole(QPalette::Window);
    setAutoFillBackground(true);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addStretch(1);
    auto *symbol = new QLabel(this);
    symbol->setPixmap(symbolPixmap(QStringLiteral("cursorarrow.click"), 32,
                                   secondaryColor(palette()), devicePixelRatioF()));
    layout->addWidget(symbol, 0, Qt::AlignHCenter);
    QLabel *title = makeSecondaryLabel(tr("Select a Node"), 13, this);
    title->setFont(fontOfSize(13, QFont::DemiBold));
    layout->addWidget(title, 0, Qt::AlignHCenter);
    QLabel *hint =
        makeSecondaryLabel(tr("Click any node on the\ncanvas to edit its properties."), 11, this);
    hint->setAlignment(Qt::AlignHCenter);
    layout->addWidget(hint, 0, Qt::AlignHCenter);
    layout->addStretch(1);
}

} // namespace Ombrel
