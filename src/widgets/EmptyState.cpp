#include "EmptyState.h"

#include <QLabel>
#include <QLinearGradient>
#include <QPainter>

namespace Ombrel {

BracesMark::BracesMark(QWidget *parent) : QWidget(parent)
{
    QFont big = font();
    big.setPointSizeF(56);
    big.setWeight(QFont::Thin);
    setFont(big);
    setFixedSize(fontMetrics().boundingRect(QStringLiteral("{}")).size() + QSize(8, 8));
}

void BracesMark::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor faded = accent;
    faded.setAlphaF(0.6f);
    QLinearGradient gradient(rect().topLeft(), rect().bottomRight());
    gradient.setColorAt(0, accent);
    gradient.setColorAt(1, faded);
    painter.setPen(QPen(QBrush(gradient), 1));
    painter.drawText(rect(), Qt::AlignCenter, QStringLiteral("{}"));
}

QLabel *emptyStateLabel(const QString &text, qreal pointSize, QFont::Weight weight, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(pointSize);
    font.setWeight(weight);
    label->setFont(font);
    return label;
}

} // namespace Ombrel
