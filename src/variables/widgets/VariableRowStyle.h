#pragma once

#include "knowledge/Color.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QPixmap>
#include <QRect>
#include <QString>

#include <optional>

class QPainter;

namespace Ombrel {

// How the rows of the variables tab are laid out and drawn, shared by the
// delegate that paints every row and the row widget that stands over a row
// being edited, so that the two line up to the pixel.
namespace VariableRowStyle {

constexpr int leadingInset = 12;
constexpr int trailingInset = 12;
constexpr int verticalInset = 8;
constexpr int colonInset = 4;
constexpr int valueSpacing = 6;
constexpr int swatchSide = 20;
// Headers: the chevron, the gap after it, and the insets around the line.
constexpr int chevronSize = 9;
constexpr int headerSpacing = 5;
constexpr int headerTopInset = 10;
constexpr int headerBottomInset = 4;
// The tint of a row whose name or value is being edited.
constexpr qreal editingTint = 0.06;

// The monospaced body font of names and values, and the header's fonts.
QFont bodyFont();
QFont selectorFont();
QFont countFont();

// The height of an entry row, its divider included: the pitch of the list.
int entryHeight();
int headerHeight();

// Where the parts of an entry row stand. The name and the value each fill
// half of what the colon leaves; a click anywhere in a cell is for it.
struct EntryGeometry
{
    QRect name;
    QRect nameText;
    QRect colon;
    QRect value;
    // Empty when the value shows no swatch.
    QRect swatch;
    QRect valueText;
    QRect divider;
};
EntryGeometry entryGeometry(const QRect &row, bool swatch);

// The secondary text colour of a palette, and the list's divider colour.
QColor secondaryColor(const QPalette &palette);
QColor dividerColor(const QPalette &palette);

// What an entry row shows.
struct EntryLook
{
    QString name;
    QString value;
    // The value's colour when it reads as one: then a swatch shows.
    std::optional<Color> swatch;
    bool editing = false;
};
// Paints the row; the parts a row widget covers with its fields are left out.
void paintEntry(QPainter &painter, const QRect &row, const EntryLook &look, const QPalette &palette,
                bool withName = true, bool withValue = true, bool withSwatch = true);

// The swatch of a colour value, drawn as the colour picker draws it.
void paintSwatch(QPainter &painter, const QRectF &rect, const std::optional<Color> &color);

// A group's header: the chevron turned by angle degrees (90 when open), the
// selector, and the count at the end.
void paintHeader(QPainter &painter, const QRect &row, const QString &selector, const QString &count,
                 qreal angle, const QPixmap &chevron, const QPalette &palette);

} // namespace VariableRowStyle
} // namespace Ombrel
