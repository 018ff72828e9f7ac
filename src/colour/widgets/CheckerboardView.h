#pragma once

#include <QWidget>

class QPainter;

namespace Ombrel {

// The pattern behind a colour, so that its opacity shows: squares of
// squareSide from the top left, light grey where row + column is even, white
// where it is odd.
class CheckerboardView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int squareSide = 4;

    explicit CheckerboardView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

// Fills rect with the pattern, its first square at rect's top left.
void paintCheckerboard(QPainter &painter, const QRectF &rect);

} // namespace Ombrel
