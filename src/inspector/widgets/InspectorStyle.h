#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QWidget;

// The fonts, colours and measures that the inspector's views share.
namespace Ombrel::InspectorStyle {

// The body text size, and the monospaced face at a size and weight.
constexpr int bodySize = 13;
QFont monospacedFont(int pixelSize = bodySize, QFont::Weight weight = QFont::Normal,
                     bool italic = false);

// The accent colour (the palette's highlight) at an opacity.
QColor accent(const QPalette &palette, qreal opacity = 1.0);
// The secondary text colour.
QColor secondary(const QPalette &palette);
// The colour of dividers and outlines.
QColor separator(const QPalette &palette);

// Sets the colour a label or button draws its text in.
void setTextColor(QWidget *widget, const QColor &color);

} // namespace Ombrel::InspectorStyle
