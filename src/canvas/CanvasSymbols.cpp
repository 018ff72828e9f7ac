#include "CanvasSymbols.h"

#include <QPainter>

namespace Ombrel::CanvasSymbols {

QIcon icon(const QString &name, const QColor &color)
{
    // Drawn at twice the size, so that it stays sharp on a high-density screen.
    // Always Ombrel's own drawing, like the sidebar's symbols: looking up the
    // desktop theme's icon reads the theme's whole index, a cost paid at every
    // start before the first paint.
    return QIcon(pixmap(name, 32, color, 1));
}

QPixmap pixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio)
{
    const QIcon own(QStringLiteral(":/symbols/%1.svg").arg(name));
    QPixmap result(QSize(size, size) * devicePixelRatio);
    result.fill(Qt::transparent);
    result.setDevicePixelRatio(devicePixelRatio);
    QPainter painter(&result);
    own.paint(&painter, QRect(0, 0, size, size));
    // The drawing is black on clear; keep its shape, take the colour.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRect(0, 0, size, size), color);
    return result;
}

} // namespace Ombrel::CanvasSymbols
