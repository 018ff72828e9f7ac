#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace Ombrel {

// Ombrel's own symbols, drawn as line art and shipped as resources under
// their names (src/widgets/symbols), painted in one colour at a size in
// device-independent pixels. Every view draws its symbols through here.
QPixmap symbolPixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio);
// The symbol as an icon, drawn for the screen's pixel ratio.
QIcon symbolIcon(const QString &name, int size, const QColor &color);

} // namespace Ombrel
