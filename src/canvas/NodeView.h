#pragma once

#include "SelectorKind.h"
#include "knowledge/Color.h"
#include "model/CSSVariables.h"
#include "model/FontWeight.h"

#include <QColor>
#include <QList>
#include <QString>

#include <optional>

class QPalette;

namespace Ombrel {

class CSSRuleset;

// The light or dark appearance of the window a card stands in.
enum class ColorScheme {
    light,
    dark,
};

// Dark when the window's background is darker than its text.
ColorScheme colorSchemeOf(const QPalette &palette);

// The theme colours a card falls back on, taken from the view's palette.
struct SystemColors
{
    QColor label;
    QColor secondary;
    QColor separator;
    QColor controlBackground;
    QColor accent;

    static SystemColors fromPalette(const QPalette &palette);
};

// How a card is drawn, settled from its inputs: what the painter needs and
// nothing of where it comes from.
struct NodeBody
{
    int indentLevel = 0;
    // The mark before the name: a symbol name, or else prefixLabel.
    std::optional<QString> prefixSymbol;
    QString prefixLabel;
    QString displayName;
    double cornerRadius = 6;
    QColor background;
    QColor textColor;
    FontWeight fontWeight = FontWeight::regular;
    QColor borderColor;
    double borderWidth = 1;
    // On and off lengths in pixels; empty for a solid line.
    QList<double> borderDash;
    // 0 hides the stroke altogether.
    double borderOpacity = 1;
    // Transparent when there is no shadow.
    QColor shadowColor;
    double verticalPadding = 10;
    // The small dot that shows a declared text colour the text cannot show.
    std::optional<QColor> dotColor;
    // The divider and the thumbnail of the background image or gradient.
    bool showsThumbnail = false;
};

// One ruleset shown as a card: its inputs, and every value derived from them
// at each draw. Reads the ruleset and never changes it.
struct NodeView
{
    const CSSRuleset &ruleset;
    bool isSelected = false;
    // Custom properties of the file on show.
    const CSSVariables &variables;
    // Path of the stylesheet, base of relative image paths; empty for none.
    QString filePath;
    bool isEditingSelector = false;
    bool showStyling = false;
    ColorScheme colorScheme = ColorScheme::light;
    SystemColors system;

    SelectorKind kind() const;

    std::optional<Color> bgColor() const;
    std::optional<Color> cssTextColor() const;
    double cornerRadius() const;
    FontWeight fontWeight() const;

    // The text colour of a styled card: black or white on its background, or
    // the declared colour unless it would vanish on it.
    QColor effectiveTextColor() const;
    // A declared text colour as light as the background, where a missing
    // background counts as light whatever the scheme.
    bool textColorOverridden() const;

    // border-style as written, or the first style word of border, or "none".
    QString resolvedBorderStyle() const;
    // From border-color, or the first word of border that reads as a colour.
    std::optional<Color> resolvedBorderColor() const;
    // Dash of the border style: on and off lengths, empty for a solid line.
    QList<double> strokeDash() const;
    bool showStroke() const;

    // A background image or gradient is declared (case-sensitive tests on
    // the raw values).
    bool hasBackgroundImage() const;

    NodeBody body() const;
};

} // namespace Ombrel
