#pragma once

#include <QStringView>

#include <optional>

namespace Ombrel {

// Reads text that is one decimal number and nothing else: optional sign,
// digits with an optional fraction, optional exponent. No white space, no
// units, no "inf" or "nan". A number too large for a double reads as infinity.
std::optional<double> readCssNumber(QStringView text);

} // namespace Ombrel
