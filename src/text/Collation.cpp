#include "Collation.h"

#include <QCollator>
#include <QLocale>

namespace Ombrel::Collation {

int compareCaseInsensitive(const QString &a, const QString &b)
{
    // Made once per thread: a collator loads the locale's rules when built.
    thread_local const QCollator collator = [] {
        QCollator made{QLocale()};
        made.setCaseSensitivity(Qt::CaseInsensitive);
        return made;
    }();
    return collator.compare(a, b);
}

} // namespace Ombrel::Collation
