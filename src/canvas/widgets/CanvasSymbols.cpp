#include "CanvasSymbols.h"

#include "shell/SymbolIcon.h"

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
    return tintedDrawing(QStringLiteral(":/symbols/%1.svg").arg(name), size, color,
                         devicePixelRatio);
}

} // namespace Ombrel::CanvasSymbols
