#include "InspectorStyle.h"

#include "widgets/ViewStyle.h"

#include <QFontDatabase>
#include <QWidget>

namespace Ombrel::InspectorStyle {

QFont monospacedFont(int pixelSize, QFont::Weight weight, bool italic)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    font.setItalic(italic);
    return font;
}

QColor accent(const QPalette &palette, qreal opacity)
{
    QColor color = palette.color(QPalette::Highlight);
    color.setAlphaF(color.alphaF() * opacity);
    return color;
}

QColor secondary(const QPalette &palette)
{
    return secondaryColor(palette);
}

QColor separator(const QPalette &palette)
{
    return palette.color(QPalette::Mid);
}

void setTextColor(QWidget *widget, const QColor &color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::ButtonText, color);
    palette.setColor(QPalette::Text, color);
    widget->setPalette(palette);
}

} // namespace Ombrel::InspectorStyle
