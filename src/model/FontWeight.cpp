#include "FontWeight.h"

namespace Ombrel {

QString fontWeightName(FontWeight weight)
{
    switch (weight) {
    case FontWeight::ultraLight:
        return QStringLiteral("ultraLight");
    case FontWeight::thin:
        return QStringLiteral("thin");
    case FontWeight::light:
        return QStringLiteral("light");
    case FontWeight::regular:
        return QStringLiteral("regular");
    case FontWeight::medium:
        return QStringLiteral("medium");
    case FontWeight::semibold:
        return QStringLiteral("semibold");
    case FontWeight::bold:
        return QStringLiteral("bold");
    case FontWeight::heavy:
        return QStringLiteral("heavy");
    case FontWeight::black:
        return QStringLiteral("black");
    }
    return QStringLiteral("regular");
}

// "ultraLight" is the lighter of the two thinnest weights, so it takes
// QFont's lightest and "thin" the next one up.
QFont::Weight toQFontWeight(FontWeight weight)
{
    switch (weight) {
    case FontWeight::ultraLight:
        return QFont::Thin;
    case FontWeight::thin:
        return QFont::ExtraLight;
    case FontWeight::light:
        return QFont::Light;
    case FontWeight::regular:
        return QFont::Normal;
    case FontWeight::medium:
        return QFont::Medium;
    case FontWeight::semibold:
        return QFont::DemiBold;
    case FontWeight::bold:
        return QFont::Bold;
    case FontWeight::heavy:
        return QFont::ExtraBold;
    case FontWeight::black:
        return QFont::Black;
    }
    return QFont::Normal;
}

} // namespace Ombrel
