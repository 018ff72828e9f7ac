#pragma once

#include <QUuid>

namespace Ombrel {

// A fresh random version-4 identity. Ids only tell records apart; they are not
// secrets, so they come from a generator seeded once rather than from the
// system's secure source, which a large parse would otherwise call thousands
// of times.
QUuid newUuid();

} // namespace Ombrel
