// Reads any text as a colour and as a number; writing a colour back must give
// "#" and six or eight hex digits whenever its components are in range.

#include "knowledge/Color.h"
#include "knowledge/CssNumber.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Ombrel;

namespace {

bool inRange(double component)
{
    return component >= 0 && component <= 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text =
        QString::fromUtf8(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    readCssNumber(text);
    const auto color = Color::fromCssString(text);
    if (!color)
        return 0;
    const QString hex = color->cssHexString();
    color->isLight();
    color->toQColor();
    if (inRange(color->red) && inRange(color->green) && inRange(color->blue) &&
        inRange(color->opacity) && hex.size() != 7 && hex.size() != 9)
        std::abort();
    return 0;
}
