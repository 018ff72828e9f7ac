#include "Color.h"

#include "CssNumber.h"
#include "text/TextScan.h"

#include <QHash>
#include <QStringList>

#include <climits>
#include <cmath>

namespace Ombrel {

namespace {

const QHash<QString, Color> &namedColors()
{
    static const QHash<QString, Color> table = {
        {QStringLiteral("black"), Palette::black},
        {QStringLiteral("white"), Palette::white},
        {QStringLiteral("red"), Palette::red},
        {QStringLiteral("blue"), Palette::blue},
        {QStringLiteral("green"), {0, 0.502, 0, 1}},
        {QStringLiteral("lime"), {0, 1, 0, 1}},
        {QStringLiteral("yellow"), Palette::yellow},
        {QStringLiteral("orange"), Palette::orange},
        {QStringLiteral("purple"), Palette::purple},
        {QStringLiteral("pink"), Palette::pink},
        {QStringLiteral("cyan"), Palette::cyan},
        {QStringLiteral("magenta"), {1, 0, 1, 1}},
        {QStringLiteral("gray"), Palette::gray},
        {QStringLiteral("grey"), Palette::gray},
        {QStringLiteral("silver"), {0.753, 0.753, 0.753, 1}},
        {QStringLiteral("navy"), {0, 0, 0.502, 1}},
        {QStringLiteral("teal"), {0, 0.502, 0.502, 1}},
        {QStringLiteral("maroon"), {0.502, 0, 0, 1}},
        {QStringLiteral("olive"), {0.502, 0.502, 0, 1}},
        {QStringLiteral("coral"), {1, 0.498, 0.314, 1}},
        {QStringLiteral("salmon"), {0.98, 0.502, 0.447, 1}},
        {QStringLiteral("gold"), {1, 0.843, 0, 1}},
        {QStringLiteral("khaki"), {0.941, 0.902, 0.549, 1}},
        {QStringLiteral("indigo"), {0.294, 0, 0.51, 1}},
        {QStringLiteral("violet"), {0.933, 0.51, 0.933, 1}},
        {QStringLiteral("turquoise"), {0.251, 0.878, 0.816, 1}},
        {QStringLiteral("tomato"), {1, 0.388, 0.278, 1}},
        {QStringLiteral("crimson"), {0.863, 0.078, 0.235, 1}},
        {QStringLiteral("chocolate"), {0.824, 0.412, 0.118, 1}},
        {QStringLiteral("slategray"), {0.439, 0.502, 0.565, 1}},
        {QStringLiteral("slategrey"), {0.439, 0.502, 0.565, 1}},
        {QStringLiteral("steelblue"), {0.275, 0.51, 0.706, 1}},
        {QStringLiteral("skyblue"), {0.529, 0.808, 0.922, 1}},
        {QStringLiteral("limegreen"), {0.196, 0.804, 0.196, 1}},
        {QStringLiteral("forestgreen"), {0.133, 0.545, 0.133, 1}},
        {QStringLiteral("darkgreen"), {0, 0.392, 0, 1}},
        {QStringLiteral("darkblue"), {0, 0, 0.545, 1}},
        {QStringLiteral("darkred"), {0.545, 0, 0, 1}},
        {QStringLiteral("transparent"), {0, 0, 0, 0}},
    };
    return table;
}

// Whether text begins with the ASCII prefix as whole characters: "rgb" is
// not a prefix of "rgb\u0301(...)".
bool beginsWith(QStringView text, QLatin1String prefix)
{
    if (!text.startsWith(prefix))
        return false;
    return text.size() == prefix.size() ||
           TextScan::CharacterWalk(text).standsAlone(prefix.size() - 1);
}

// The pieces between standalone commas, empty ones dropped, each trimmed of
// spaces and tabs.
QList<QStringView> commaPieces(QStringView text)
{
    QList<QStringView> pieces;
    const TextScan::CharacterWalk walk(text);
    qsizetype start = 0;
    while (start <= text.size()) {
        qsizetype comma = walk.indexOfStandalone(u',', start);
        if (comma < 0)
            comma = text.size();
        if (comma > start)
            pieces.append(TextScan::trimmedWhitespace(text.sliced(start, comma - start)));
        start = comma + 1;
    }
    return pieces;
}

// The arguments of "name(...)": the text without its first skip characters
// and its last character, whatever they are.
QStringView functionArguments(QStringView text, int skip)
{
    qsizetype begin = 0;
    for (int i = 0; i < skip && begin < text.size(); ++i)
        begin = TextScan::nextCharacterEnd(text, begin);
    const QStringView rest = text.sliced(begin);
    return rest.first(rest.isEmpty() ? 0 : TextScan::lastCharacterStart(rest));
}

// Three numbers and an optional opacity that defaults to 1.
std::optional<Color> readComponents(const QList<QStringView> &pieces, auto clean)
{
    if (pieces.size() < 3)
        return std::nullopt;
    double numbers[3];
    for (int i = 0; i < 3; ++i) {
        const auto number = readCssNumber(clean(pieces[i]));
        if (!number)
            return std::nullopt;
        numbers[i] = *number;
    }
    const double opacity = pieces.size() > 3 ? readCssNumber(clean(pieces[3])).value_or(1.0) : 1.0;
    return Color{numbers[0], numbers[1], numbers[2], opacity};
}

std::optional<Color> fromHex(QStringView digits)
{
    const qsizetype count = digits.size();
    if (count != 3 && count != 4 && count != 6 && count != 8)
        return std::nullopt;
    int values[8];
    for (qsizetype i = 0; i < count; ++i) {
        const char16_t unit = digits[i].unicode();
        if (unit >= u'0' && unit <= u'9')
            values[i] = unit - u'0';
        else if (unit >= u'a' && unit <= u'f')
            values[i] = unit - u'a' + 10;
        else if (unit >= u'A' && unit <= u'F')
            values[i] = unit - u'A' + 10;
        else
            return std::nullopt;
    }
    const bool shortForm = count <= 4;
    auto byte = [&](int index) {
        return shortForm ? values[index] * 17 : values[2 * index] * 16 + values[2 * index + 1];
    };
    const bool hasOpacity = count == 4 || count == 8;
    return Color{byte(0) / 255.0, byte(1) / 255.0, byte(2) / 255.0,
                 hasOpacity ? byte(3) / 255.0 : 1.0};
}

// Hue, saturation and brightness (HSB), hue in turns.
Color fromHsb(double hue, double saturation, double brightness, double opacity)
{
    // A hue too large for a double has no position on the wheel; red is as
    // good a reading as any and keeps the sector arithmetic defined.
    const double h = std::isfinite(hue) ? hue - std::floor(hue) : 0.0;
    const double s = std::clamp(saturation, 0.0, 1.0);
    const double v = std::clamp(brightness, 0.0, 1.0);
    const double sector = h * 6.0;
    const int index = int(sector) % 6;
    const double f = sector - std::floor(sector);
    const double p = v * (1 - s);
    const double q = v * (1 - s * f);
    const double t = v * (1 - s * (1 - f));
    switch (index) {
    case 0:
        return {v, t, p, opacity};
    case 1:
        return {q, v, p, opacity};
    case 2:
        return {p, v, t, opacity};
    case 3:
        return {p, q, v, opacity};
    case 4:
        return {t, p, v, opacity};
    default:
        return {v, p, q, opacity};
    }
}

bool isFinite(const Color &color)
{
    return std::isfinite(color.red) && std::isfinite(color.green) && std::isfinite(color.blue) &&
           std::isfinite(color.opacity);
}

// A component as a byte, truncated toward zero; out-of-range values keep the
// two's-complement form that a "%02X" of an int gives.
QString hexByte(double component)
{
    const double scaled = std::trunc(component * 255.0);
    const int value = int(std::clamp(scaled, double(INT_MIN), double(INT_MAX)));
    return QStringLiteral("%1").arg(uint(value), 2, 16, QLatin1Char('0')).toUpper();
}

} // namespace

std::optional<Color> Color::fromCssString(QStringView input)
{
    const QString text = TextScan::trimmedWhitespace(input).toString().toLower();
    if (text == QLatin1String("transparent"))
        return Color{0, 0, 0, 0};
    if (text == QLatin1String("inherit") || text == QLatin1String("initial") ||
        text == QLatin1String("unset") || text == QLatin1String("currentcolor"))
        return std::nullopt;
    if (beginsWith(text, QLatin1String("#")))
        return fromHex(QStringView(text).sliced(1));
    if (beginsWith(text, QLatin1String("rgb"))) {
        const int skip = beginsWith(text, QLatin1String("rgba")) ? 5 : 4;
        const auto same = [](QStringView piece) { return piece; };
        const auto components = readComponents(commaPieces(functionArguments(text, skip)), same);
        if (!components)
            return std::nullopt;
        return Color{components->red / 255.0, components->green / 255.0, components->blue / 255.0,
                     components->opacity};
    }
    if (beginsWith(text, QLatin1String("hsl"))) {
        const int skip = beginsWith(text, QLatin1String("hsla")) ? 5 : 4;
        const auto withoutUnits = [](QStringView piece) {
            return piece.toString().remove(u'%').remove(QLatin1String("deg"));
        };
        const auto components =
            readComponents(commaPieces(functionArguments(text, skip)), withoutUnits);
        if (!components)
            return std::nullopt;
        return fromHsb(components->red / 360.0, components->green / 100.0, components->blue / 100.0,
                       components->opacity);
    }
    const auto named = namedColors().constFind(text);
    if (named == namedColors().constEnd())
        return std::nullopt;
    return *named;
}

QString Color::cssHexString() const
{
    if (!isFinite(*this))
        return QStringLiteral("#000000");
    QString hex = QLatin1Char('#') + hexByte(red) + hexByte(green) + hexByte(blue);
    if (opacity < 0.999)
        hex += hexByte(opacity);
    return hex;
}

bool Color::isLight() const
{
    if (!isFinite(*this))
        return false;
    return 0.299 * red + 0.587 * green + 0.114 * blue > 0.5;
}

QColor Color::toQColor() const
{
    if (!isFinite(*this))
        return QColor(Qt::transparent);
    return QColor::fromRgbF(float(std::clamp(red, 0.0, 1.0)), float(std::clamp(green, 0.0, 1.0)),
                            float(std::clamp(blue, 0.0, 1.0)),
                            float(std::clamp(opacity, 0.0, 1.0)));
}

} // namespace Ombrel
