#include "HeroGlyph.h"

#include "widgets/SymbolIcon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace Ombrel {

HeroGlyph::HeroGlyph(QWidget *parent) : QWidget(parent) {}

HeroGlyph *HeroGlyph::text(const QString &text, const QFont &font, QWidget *parent)
{
    auto *glyph = new HeroGlyph(parent);
    glyph->m_text = text;
    glyph->setFont(font);
    return glyph;
}

HeroGlyph *HeroGlyph::symbol(const QString &name, int size, QWidget *parent)
{
    auto *glyph = new HeroGlyph(parent);
    glyph->m_symbol = name;
    glyph->m_symbolSize = size;
    return glyph;
}

QSize HeroGlyph::sizeHint() const
{
    if (!m_symbol.isEmpty())
        return {m_symbolSize, m_symbolSize};
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(m_text), metrics.height()};
}

void HeroGlyph::paintEvent(QPaintEvent *)
{
    const QColor accent = palette().color(QPalette::Highlight);
    QColor faded = accent;
    faded.setAlphaF(0.6);
    const QSize size = sizeHint();
    const QRect area(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setColorAt(0, accent);
    gradient.setColorAt(1, faded);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!m_symbol.isEmpty()) {
        QPixmap mark = symbolPixmap(m_symbol, m_symbolSize, Qt::black, devicePixelRatioF());
        QPainter fill(&mark);
        fill.setCompositionMode(QPainter::CompositionMode_SourceIn);
        QLinearGradient local(0, 0, 0, m_symbolSize);
        local.setColorAt(0, accent);
        local.setColorAt(1, faded);
        fill.fillRect(QRect(0, 0, m_symbolSize, m_symbolSize), local);
        fill.end();
        painter.drawPixmap(area.topLeft(), mark);
        return;
    }
    QPainterPath path;
    path.addText(area.left(), area.top() + QFontMetrics(font()).ascent(), font(), m_text);
    painter.fillPath(path, gradient);
}

} // namespace Ombrel
