#pragma once

#include <QHash>
#include <QString>

namespace Ombrel {

// Custom properties of one file: name with its leading "--" (case-sensitive)
// to the raw stored value, which may itself hold var().
using CSSVariables = QHash<QString, QString>;

} // namespace Ombrel
