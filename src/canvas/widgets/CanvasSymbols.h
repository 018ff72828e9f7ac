#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

// The symbols of the canvas pane, drawn for Ombrel and shipped as resources.
namespace Ombrel::CanvasSymbols {

// The symbol as an icon in one colour.
QIcon icon(const QString &name, const QColor &color);

// The symbol size points square, in one colour, for a screen of the given
// device pixel ratio.
QPixmap pixmap(const QString &name, int size, const QColor &color, qreal devicePixelRatio);

} // namespace Ombrel::CanvasSymbols
