#include "CheckerboardView.h"

#include <QPainter>

#include <cmath>

namespace Ombrel {

CheckerboardView::CheckerboardView(QWidget *parent) : QWidget(parent) {}

void CheckerboardView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintCheckerboard(painter, rect());
}

void paintCheckerboard(QPainter &painter, const QRectF &rect)
{
    constexpr qreal side = CheckerboardView::squareSide;
    painter.fillRect(rect, Qt::white);
    const int rows = int(std::ceil(rect.height() / side));
    const int columns = int(std::ceil(rect.width() / side));
    for (int row = 0; row < rows; ++row) {
        for (int column = row % 2; column < columns; column += 2) {
            const QRectF square(rect.left() + column * side, rect.top() + row * side, side, side);
            painter.fillRect(square.intersected(rect), Qt::lightGray);
        }
    }
}

} // namespace Ombrel
