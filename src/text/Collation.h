#pragma once

#include <QString>

// The locale's case-insensitive ordering of names, shared by every list that
// sorts what the user typed, so that they all agree on where "a" and "B" go.
namespace Ombrel::Collation {

// Negative, zero or positive as a sorts before, with or after b under the
// user's locale, ignoring case. Names that differ only in case compare equal,
// so a stable sort keeps their order.
int compareCaseInsensitive(const QString &a, const QString &b);

// Whether a sorts strictly before b by compareCaseInsensitive.
inline bool lessCaseInsensitive(const QString &a, const QString &b)
{
    return compareCaseInsensitive(a, b) < 0;
}

} // namespace Ombrel::Collation
