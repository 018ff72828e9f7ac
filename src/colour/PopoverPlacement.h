#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace Ombrel {

// Where a popover of size opens for a pointer at pointer on a screen whose
// usable area is available: on the pointer's left, its right edge against
// the pointer and its middle at the pointer's height. It goes to the
// pointer's right when only there it has room, and is then moved as little
// as needed to stay inside available.
QRect popoverGeometry(QPoint pointer, QSize size, const QRect &available);

} // namespace Ombrel
