#include "VariableRowStyle.h"

#include "colour/widgets/ColorSwatchView.h"
#include "variables/VariablesController.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace Ombrel::VariableRowStyle {

namespace {

QFont monospaced(int pixelSize, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

QColor withOpacity(QColor color, qreal opacity)
{
    color.setAlphaF(float(color.alphaF() * opacity));
    return color;
}

} // namespace

QFont bodyFont()
{
    return monospaced(13, QFont::Normal);
}

QFont selectorFont()
{
    return monospaced(11, QFont::DemiBold);
}

QFont countFont()
{
    QFont font;
    font.setPixelSize(10);
    return font;
}

int entryHeight()
{
    return int(VariablesController::rowPitch);
}

int headerHeight()
{
    return headerTopInset + QFontMetrics(selectorFont()).height() + headerBottomInset;
}

EntryGeometry entryGeometry(const QRect &row, bool swatch)
{
    EntryGeometry geometry;
    const int colonWidth = QFontMetrics(bodyFont()).horizontalAdvance(u':') + 2 * colonInset;
    const int half = (row.width() - colonWidth) / 2;
    const int top = row.top();
    const int height = row.height() - 1;
    geometry.name = QRect(row.left(), top, half, height);
    geometry.nameText = geometry.name.adjusted(leadingInset, verticalInset, 0, -verticalInset);
    geometry.colon = QRect(geometry.name.right() + 1, top, colonWidth, height);
    geometry.value =
        QRect(geometry.colon.right() + 1, top, row.right() - geometry.colon.right(), height);
    geometry.valueText = geometry.value.adjusted(0, verticalInset, -trailingInset, -verticalInset);
    if (swatch) {
        geometry.swatch =
            QRect(geometry.value.left(), top + (height - swatchSide) / 2, swatchSide, swatchSide);
        geometry.valueText.setLeft(geometry.swatch.right() + 1 + valueSpacing);
    }
    geometry.divider = QRect(row.left(), row.bottom(), row.width(), 1);
    return geometry;
}

QColor secondaryColor(const QPalette &palette)
{
    return palette.color(QPalette::PlaceholderText);
}

QColor dividerColor(const QPalette &palette)
{
    return palette.color(QPalette::Mid);
}

void paintEntry(QPainter &painter, const QRect &row, const EntryLook &look, const QPalette &palette,
                bool withName, bool withValue, bool withSwatch)
{
    const EntryGeometry geometry = entryGeometry(row, look.swatch.has_value());
    if (look.editing)
        painter.fillRect(row.adjusted(0, 0, 0, -1),
                         withOpacity(palette.color(QPalette::Highlight), editingTint));
    const QFont font = bodyFont();
    const QFontMetrics metrics(font);
    painter.setFont(font);
    if (withName) {
        painter.setPen(secondaryColor(palette));
        painter.drawText(geometry.nameText, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(look.name, Qt::ElideRight, geometry.nameText.width()));
    }
    painter.setPen(secondaryColor(palette));
    painter.drawText(geometry.colon, Qt::AlignCenter, QStringLiteral(":"));
    if (withSwatch && look.swatch.has_value())
        paintSwatch(painter, geometry.swatch, look.swatch);
    if (withValue) {
        painter.setPen(palette.color(QPalette::WindowText));
        // One line: a value with line breaks shows them as spaces.
        QString line = look.value;
        line.replace(u'\n', u' ');
        painter.drawText(geometry.valueText, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(line, Qt::ElideRight, geometry.valueText.width()));
    }
    painter.fillRect(geometry.divider, dividerColor(palette));
}

void paintHeader(QPainter &painter, const QRect &row, const QString &selector, const QString &count,
                 qreal angle, const QPixmap &chevron, const QPalette &palette)
{
    const QRect line =
        row.adjusted(leadingInset, headerTopInset, -trailingInset, -headerBottomInset);
    const QColor secondary = secondaryColor(palette);

    const QPointF centre(line.left() + chevronSize / 2.0, line.center().y() + 0.5);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(centre);
    painter.rotate(angle);
    painter.drawPixmap(QRectF(-chevronSize / 2.0, -chevronSize / 2.0, chevronSize, chevronSize),
                       chevron, QRectF(chevron.rect()));
    painter.restore();

    const QFont countText = countFont();
    const int countWidth = QFontMetrics(countText).horizontalAdvance(count);
    painter.setFont(countText);
    painter.setPen(withOpacity(secondary, 0.6));
    painter.drawText(QRect(line.right() - countWidth, line.top(), countWidth, line.height()),
                     Qt::AlignRight | Qt::AlignVCenter, count);

    const QFont selectorText = selectorFont();
    const QRect selectorRect(line.left() + chevronSize + headerSpacing, line.top(),
                             line.width() - chevronSize - 2 * headerSpacing - countWidth,
                             line.height());
    painter.setFont(selectorText);
    painter.setPen(secondary);
    painter.drawText(
        selectorRect, Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(selectorText).elidedText(selector, Qt::ElideRight, selectorRect.width()));
}

void paintSwatch(QPainter &painter, const QRectF &rect, const std::optional<Color> &color)
{
    const SwatchShape shape;
    paintColorSwatch(painter, rect, color, shape.cornerRadius, shape.strokeOpacity);
}

} // namespace Ombrel::VariableRowStyle
