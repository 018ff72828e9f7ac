#pragma once

#include "knowledge/Color.h"

#include <QWidget>

#include <optional>

class QPainter;

namespace Ombrel {

// The outline of a swatch: its side, its corner radius, and the opacity of
// its black hairline.
struct SwatchShape
{
    int side = 20;
    qreal cornerRadius = 3;
    qreal strokeOpacity = 0.2;
};

// A colour over the checkerboard, clipped to rounded corners and outlined;
// with no colour only the checkerboard shows.
class ColorSwatchView : public QWidget
{
    Q_OBJECT

public:
    explicit ColorSwatchView(QWidget *parent = nullptr, const SwatchShape &shape = SwatchShape());

    std::optional<Color> color() const { return m_color; }
    void setColor(const std::optional<Color> &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    SwatchShape m_shape;
    std::optional<Color> m_color;
};

void paintColorSwatch(QPainter &painter, const QRectF &rect, const std::optional<Color> &color,
                      qreal cornerRadius, qreal strokeOpacity);

} // namespace Ombrel
