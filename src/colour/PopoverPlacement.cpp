#include "PopoverPlacement.h"

#include <algorithm>

namespace Ombrel {

QRect popoverGeometry(QPoint pointer, QSize size, const QRect &available)
{
    int x = pointer.x() - size.width();
    const bool roomOnLeft = x >= available.left();
    const bool roomOnRight = pointer.x() + 1 + size.width() <= available.right() + 1;
    if (!roomOnLeft && roomOnRight)
        x = pointer.x() + 1;
    int y = pointer.y() - size.height() / 2;
    // Against the right and bottom edges first, so that a popover larger than
    // the screen keeps its top left corner in sight.
    x = std::max(available.left(), std::min(x, available.right() + 1 - size.width()));
    y = std::max(available.top(), std::min(y, available.bottom() + 1 - size.height()));
    return QRect(QPoint(x, y), size);
}

} // namespace Ombrel
