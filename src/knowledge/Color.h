#pragma once

#include <QColor>
#include <QString>
#include <QStringView>

#include <optional>

namespace Ombrel {

// An sRGB colour read from stylesheet text. Components are nominally 0..1
// but are not clamped: rgb(300, 0, 0) keeps its 300 / 255 red.
struct Color
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double opacity = 1;

    friend bool operator==(const Color &, const Color &) = default;

    // The one reading of colour text: hex, rgb()/rgba(), hsl()/hsla() (whose
    // third number is HSB brightness), "transparent" and the named colours.
    // Absent for anything else, including the keywords that defer to another
    // colour ("inherit", "currentColor", ...).
    static std::optional<Color> fromCssString(QStringView text);

    // "#RRGGBB", or "#RRGGBBAA" when the opacity is below 0.999; components are
    // truncated, never rounded.
    QString cssHexString() const;

    // Luminance (0.299 R + 0.587 G + 0.114 B) strictly above one half.
    bool isLight() const;

    // For painting: components clamped into the displayable range.
    QColor toQColor() const;
};

// The palette colours that the names "black", "white", "red", "blue",
// "yellow", "orange", "purple", "pink", "cyan" and "gray"/"grey" stand for.
// They are a desktop palette's colours rather than the CSS keyword values
// (red is a warm, slightly orange red); these fixed sRGB values are the one
// place where they are chosen.
namespace Palette {
inline constexpr Color black{0, 0, 0, 1};
inline constexpr Color white{1, 1, 1, 1};
inline constexpr Color red{1.0, 0.231, 0.188, 1};
inline constexpr Color blue{0.0, 0.478, 1.0, 1};
inline constexpr Color yellow{1.0, 0.8, 0.0, 1};
inline constexpr Color orange{1.0, 0.584, 0.0, 1};
inline constexpr Color purple{0.686, 0.322, 0.871, 1};
inline constexpr Color pink{1.0, 0.176, 0.333, 1};
inline constexpr Color cyan{0.196, 0.678, 0.902, 1};
inline constexpr Color gray{0.557, 0.557, 0.576, 1};
} // namespace Palette

} // namespace Ombrel
