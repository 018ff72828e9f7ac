#include "ToolkitColor.h"

namespace Ombrel {

Color colorFromToolkit(const QColor &color)
{
    if (!color.isValid())
        return Color{0, 0, 0, 1};
    const QColor rgb = color.toRgb();
    return Color{rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF()};
}

QString cssHexOf(const QColor &color)
{
    return colorFromToolkit(color).cssHexString();
}

} // namespace Ombrel
