// Reads any text as a length, a border radius and a font weight: the readings
// never fail, a radius is never above 999 and never NaN.

#include "model/CSSRuleset.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Ombrel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text =
        QString::fromUtf8(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (const std::optional<double> length = CSSRuleset::cssLength(text);
        length && std::isnan(*length))
        std::abort();
    const CSSRuleset ruleset(QStringLiteral(".f"),
                             {CSSProperty{QStringLiteral("border-radius"), text},
                              CSSProperty{QStringLiteral("font-weight"), text}});
    const CSSVariables variables{{QStringLiteral("--v"), text}};
    const double radius = ruleset.resolvedBorderRadius(variables);
    if (std::isnan(radius) || radius > 999)
        std::abort();
    toQFontWeight(ruleset.resolvedFontWeight(variables));
    return 0;
}
