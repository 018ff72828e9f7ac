#include "SymbolIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

namespace Ombrel {

namespace {

QString resourcePath(const QString &name)
{
    return QStringLiteral(":/ombrel/icons/") + name + QStringLiteral(".svg");
}

} // namespace

QPixmap symbolPixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio)
{
    const int pixels = qCeil(size * devicePixelRatio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(resourcePath(name));
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

QIcon applicationIcon()
{
    QSvgRenderer renderer(resourcePath(QStringLiteral("ombrel")));
    QIcon icon;
    for (const int size : {16, 32, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace Ombrel
