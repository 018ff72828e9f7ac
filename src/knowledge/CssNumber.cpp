#include "CssNumber.h"

#include <charconv>
#include <limits>
#include <string>

namespace Ombrel {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

std::optional<double> readCssNumber(QStringView text)
{
    qsizetype at = 0;
    const qsizetype size = text.size();
    bool negative = false;
    if (at < size && (text[at] == u'+' || text[at] == u'-')) {
        negative = text[at] == u'-';
        ++at;
    }
    const qsizetype mantissaStart = at;
    qsizetype digits = 0;
    while (at < size && isDigit(text[at])) {
        ++at;
        ++digits;
    }
    if (at < size && text[at] == u'.') {
        ++at;
        while (at < size && isDigit(text[at])) {
            ++at;
            ++digits;
        }
    }
    if (digits == 0)
        return std::nullopt;
    bool positiveExponent = true;
    if (at < size && (text[at] == u'e' || text[at] == u'E')) {
        ++at;
        if (at < size && (text[at] == u'+' || text[at] == u'-')) {
            positiveExponent = text[at] == u'+';
            ++at;
        }
        qsizetype exponentDigits = 0;
        while (at < size && isDigit(text[at])) {
            ++at;
            ++exponentDigits;
        }
        if (exponentDigits == 0)
            return std::nullopt;
    }
    if (at != size)
        return std::nullopt;

    // Everything left is ASCII, so the conversion is exact and independent of
    // the process locale.
    const std::string ascii = text.sliced(mantissaStart).toLatin1().toStdString();
    double value = 0;
    const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    if (error == std::errc::result_out_of_range)
        value = positiveExponent ? std::numeric_limits<double>::infinity() : 0.0;
    else if (error != std::errc() || end != ascii.data() + ascii.size())
        return std::nullopt;
    return negative ? -value : value;
}

} // namespace Ombrel
