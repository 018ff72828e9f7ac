#include "CanvasSymbols.h"

#include <QHash>
#include <QPainter>

namespace Ombrel::CanvasSymbols {

QIcon icon(const QString &name, const QColor &color)
{
    static const QHash<QString, QString> themeNames{
        {QStringLiteral("plus"), QStringLiteral("list-add")},
        {QStringLiteral("magnifyingglass"), QStringLiteral("edit-find")},
        {QStringLiteral("xmark.circle.fill"), QStringLiteral("edit-clear")},
    };
    // Drawn at twice the size, so that it stays sharp on a high-density screen.
    const QIcon own(pixmap(name, 32, color, 1));
    const QString themeName = themeNames.value(name);
    return themeName.isEmpty() ? own : QIcon::fromTheme(themeName, own);
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
