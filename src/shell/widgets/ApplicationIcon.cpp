#include "ApplicationIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

namespace Ombrel {

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
    return QIcon(new DrawingIconEngine(QStringLiteral(":/ombrel/icons/ombrel.svg")));
}

} // namespace Ombrel
