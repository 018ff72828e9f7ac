#include "CardSymbols.h"

#include "widgets/SymbolIcon.h"

#include <QPaintDevice>
#include <QPainter>

#include <cmath>

namespace Ombrel {

namespace {

// Enough for every symbol in every card colour of a large stylesheet; beyond
// it the set starts over rather than grow without end.
constexpr qsizetype maxPixmaps = 256;

} // namespace

QPixmap CardSymbols::tinted(const QString &name, int pixels, const QColor &color)
{
    const QString key = QStringLiteral("%1/%2/%3").arg(name).arg(pixels).arg(color.rgba(), 0, 16);
    if (const auto found = m_pixmaps.constFind(key); found != m_pixmaps.constEnd())
        return *found;
    const QPixmap pixmap = symbolPixmap(name, pixels, color, 1);
    if (m_pixmaps.size() >= maxPixmaps)
        m_pixmaps.clear();
    m_pixmaps.insert(key, pixmap);
    return pixmap;
}

void CardSymbols::paint(QPainter *painter, const QString &name, const QRectF &rect, double size,
                        const QColor &color)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    QPixmap pixmap = tinted(name, int(std::ceil(size * ratio)), color);
    if (pixmap.isNull())
        return;
    const QRectF square(rect.center().x() - size / 2, rect.center().y() - size / 2, size, size);
    painter->drawPixmap(square, pixmap, QRectF(pixmap.rect()));
}

} // namespace Ombrel
