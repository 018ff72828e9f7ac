#pragma once

#include <QFont>
#include <QString>

namespace Ombrel {

// The weights a card can be drawn in, from the lightest to the heaviest.
enum class FontWeight {
    ultraLight,
    thin,
    light,
    regular,
    medium,
    semibold,
    bold,
    heavy,
    black,
};

// The enumerator's own name ("semibold"), as tools print it.
QString fontWeightName(FontWeight weight);

// The nearest weight of a QFont.
QFont::Weight toQFontWeight(FontWeight weight);

} // namespace Ombrel
