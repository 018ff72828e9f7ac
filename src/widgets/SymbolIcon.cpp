#include "SymbolIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
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
    return tintedDrawing(resourcePath(name), size, color, devicePixelRatio);
}

QPixmap tintedDrawing(const QString &path, int size, const QColor &color, qreal devicePixelRatio)
{
    const int pixels = qCeil(size * devicePixelRatio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QSvgRenderer renderer(path);
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

namespace {

// A drawing rendered at the size asked for, when it is asked for. Having no
// sizes of its own, it is scalable to Qt: a window's icon is drawn only at
// the sizes the platform takes, as the window is made.
class DrawingIconEngine : public QIconEngine
{
public:
    explicit DrawingIconEngine(const QString &path) : m_path(path) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        QSvgRenderer(m_path).render(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new DrawingIconEngine(m_path); }

private:
    QString m_path;
};

} // namespace

QIcon applicationIcon()
{
    return QIcon(new DrawingIconEngine(resourcePath(QStringLiteral("ombrel"))));
}

} // namespace Ombrel
