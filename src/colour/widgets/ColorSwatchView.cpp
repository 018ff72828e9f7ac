#include "ColorSwatchView.h"

#include "CheckerboardView.h"

#include <QPainter>
#include <QPainterPath>

namespace Ombrel {

ColorSwatchView::ColorSwatchView(QWidget *parent, const SwatchShape &shape)
    : QWidget(parent), m_shape(shape)
{
    setFixedSize(shape.side, shape.side);
}

void ColorSwatchView::setColor(const std::optional<Color> &color)
{
    if (color == m_color)
        return;
    m_color = color;
    update();
}

void ColorSwatchView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintColorSwatch(painter, rect(), m_color, m_shape.cornerRadius, m_shape.strokeOpacity);
}

void paintColorSwatch(QPainter &painter, const QRectF &rect, const std::optional<Color> &color,
                      qreal cornerRadius, qreal strokeOpacity)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(rect, cornerRadius, cornerRadius);
    painter.setClipPath(outline);
    paintCheckerboard(painter, rect);
    if (color)
        painter.fillRect(rect, color->toQColor());
    painter.setClipping(false);
    // A hairline of half a point, drawn inside the edge.
    constexpr qreal strokeWidth = 0.5;
    const qreal inset = strokeWidth / 2;
    painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, float(strokeOpacity)), strokeWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), cornerRadius,
                            cornerRadius);
    painter.restore();
}

} // namespace Ombrel
