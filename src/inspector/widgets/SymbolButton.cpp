#include "SymbolButton.h"

#include "widgets/SymbolIcon.h"

#include <QPainter>

namespace Ombrel {

namespace {

constexpr int labelSpacing = 6;
constexpr qreal disabledOpacity = 0.35;

} // namespace

SymbolButton::SymbolButton(const QString &symbol, int symbolSize, QWidget *parent)
    : QAbstractButton(parent), m_symbol(symbol), m_symbolSize(symbolSize)
{
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
}

void SymbolButton::setSymbolColor(const QColor &color)
{
    if (m_symbolColor == color)
        return;
    m_symbolColor = color;
    update();
}

void SymbolButton::setInsets(const QMargins &insets)
{
    m_insets = insets;
    updateGeometry();
    update();
}

QSize SymbolButton::sizeHint() const
{
    int width = m_symbolSize;
    int height = m_symbolSize;
    if (!text().isEmpty()) {
        const QFontMetrics metrics(font());
        width += labelSpacing + metrics.horizontalAdvance(text());
        height = std::max(height, metrics.height());
    }
    return QSize(width, height).grownBy(m_insets);
}

void SymbolButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    const QRect content = rect().marginsRemoved(m_insets);
    // Drawn from its SVG once per colour and pixel ratio, not at every paint:
    // the rows of the inspector repaint at each keystroke.
    if (m_pixmap.isNull() || m_pixmapColor != m_symbolColor ||
        m_pixmap.devicePixelRatio() != devicePixelRatioF()) {
        m_pixmap = symbolPixmap(m_symbol, m_symbolSize, m_symbolColor, devicePixelRatioF());
        m_pixmapColor = m_symbolColor;
    }
    const QPixmap &symbol = m_pixmap;
    if (text().isEmpty()) {
        painter.drawPixmap(content.center().x() - m_symbolSize / 2 + 1,
                           content.center().y() - m_symbolSize / 2 + 1, symbol);
        return;
    }
    painter.drawPixmap(content.left(), content.center().y() - m_symbolSize / 2 + 1, symbol);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(content.adjusted(m_symbolSize + labelSpacing, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter, text());
}

} // namespace Ombrel
