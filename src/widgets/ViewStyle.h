#pragma once

#include <QFont>
#include <QPalette>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace Ombrel {

// The few text and button styles the full-window views share.
QFont fontOfSize(int pixelSize, QFont::Weight weight = QFont::Normal);
QLabel *makeLabel(const QString &text, int pixelSize, QFont::Weight weight, QWidget *parent);
// A label in the secondary text colour.
QLabel *makeSecondaryLabel(const QString &text, int pixelSize, QWidget *parent);
// The prominent button: a symbol and a title at 14, medium weight, with room
// of 24 beside and 10 above and below.
QPushButton *makeProminentButton(const QString &symbol, const QString &title, QWidget *parent);
// The secondary text colour of a palette.
QColor secondaryColor(const QPalette &palette);

} // namespace Ombrel
