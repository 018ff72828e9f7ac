#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace Ombrel {

// Ombrel's own symbols, drawn as line art and shipped as resources, painted
// in one colour at a size in device-independent pixels.
QPixmap symbolPixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio);
// Any square SVG drawing, given by its resource path, painted the same way.
// Drawn straight from the SVG rather than through an icon: the icon engine
// is a plugin, loaded and set up at the first symbol of every start.
QPixmap tintedDrawing(const QString &path, int size, const QColor &color, qreal devicePixelRatio);
QIcon symbolIcon(const QString &name, int size, const QColor &color);

// The application's icon.
QIcon applicationIcon();

} // namespace Ombrel
