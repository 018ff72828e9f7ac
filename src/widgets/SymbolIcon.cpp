#include "SymbolIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

#include <QtMath>

namespace Ombrel {

QPixmap symbolPixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio)
{
    const int pixels = qCeil(size * devicePixelRatio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    // Drawn straight from the SVG rather than through an icon: the icon engine
    // is a plugin, loaded and set up at the first symbol of every start.
    QSvgRenderer renderer(QStringLiteral(":/symbols/") + name + QStringLiteral(".svg"));
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    // The drawing's own colour is replaced, its coverage kept.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
    pixmap.setDevicePixelRatio(devicePixelRatio);
    return pixmap;
}

QIcon symbolIcon(const QString &name, int size, const QColor &color)
{
    QIcon icon;
    icon.addPixmap(symbolPixmap(name, size, color, qGuiApp->devicePixelRatio()));
    return icon;
}

} // namespace Ombrel
