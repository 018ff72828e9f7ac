#pragma once

#include "knowledge/Color.h"

#include <QColor>
#include <QString>

namespace Ombrel {

// A colour of the toolkit (the chooser's, a palette's) as a Color, by way of
// sRGB. A colour that is not valid becomes opaque black.
Color colorFromToolkit(const QColor &color);

// Its hex text: "#000000" for a colour that is not valid.
QString cssHexOf(const QColor &color);

} // namespace Ombrel
