#include "NodeView.h"

#include "model/CSSRuleset.h"
#include "text/TextScan.h"

#include <QPalette>

namespace Ombrel {

namespace {

// The words of a value between blanks, empty ones dropped.
QList<QStringView> blankSeparatedWords(QStringView value)
{
    QList<QStringView> words;
    qsizetype start = 0;
    for (qsizetype at = 0; at <= value.size(); ++at) {
        if (at < value.size() && !TextScan::isWhitespace(value[at].unicode()))
            continue;
        if (at > start)
            words.append(value.sliced(start, at - start));
        start = at + 1;
    }
    return words;
}

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(color.alphaF() * opacity));
    return color;
}

} // namespace

ColorScheme colorSchemeOf(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() <
                   palette.color(QPalette::WindowText).lightnessF()
               ? ColorScheme::dark
               : ColorScheme::light;
}

SystemColors SystemColors::fromPalette(const QPalette &palette)
{
    return {
        palette.color(QPalette::WindowText), palette.color(QPalette::PlaceholderText),
        palette.color(QPalette::Mid),        palette.color(QPalette::Base),
        palette.color(QPalette::Highlight),
    };
}

SelectorKind NodeView::kind() const
{
    return SelectorKind::of(ruleset.selector());
}

std::optional<Color> NodeView::bgColor() const
{
    return ruleset.resolvedBackgroundColor(variables);
}

std::optional<Color> NodeView::cssTextColor() const
{
    return ruleset.resolvedTextColor(variables);
}

double NodeView::cornerRadius() const
{
    return ruleset.resolvedBorderRadius(variables);
}

FontWeight NodeView::fontWeight() const
{
    return ruleset.resolvedFontWeight(variables);
}

QColor NodeView::effectiveTextColor() const
{
    const std::optional<Color> background = bgColor();
    const bool backgroundIsLight =
        background ? background->isLight() : colorScheme == ColorScheme::light;
    const std::optional<Color> text = cssTextColor();
    if (!text)
        return backgroundIsLight ? QColor(Qt::black) : QColor(Qt::white);
    if (text->isLight() == backgroundIsLight)
        return system.label;
    return text->toQColor();
}

bool NodeView::textColorOverridden() const
{
    const std::optional<Color> text = cssTextColor();
    if (!text)
        return false;
    const std::optional<Color> background = bgColor();
    return text->isLight() == (background ? background->isLight() : true);
}

QString NodeView::resolvedBorderStyle() const
{
    if (const std::optional<QString> style = ruleset.value(u"border-style"))
        return *style;
    if (const std::optional<QString> border = ruleset.value(u"border")) {
        static const QStringList styles = {
            QStringLiteral("solid"),  QStringLiteral("dashed"), QStringLiteral("dotted"),
            QStringLiteral("double"), QStringLiteral("none"),
        };
        for (const QStringView word : blankSeparatedWords(*border)) {
            for (const QString &style : styles) {
                if (word == style)
                    return style;
            }
        }
    }
    return QStringLiteral("none");
}

std::optional<Color> NodeView::resolvedBorderColor() const
{
    if (const std::optional<QString> color = ruleset.value(u"border-color")) {
        if (std::optional<Color> read =
                Color::fromCssString(CSSRuleset::resolveVars(*color, variables)))
            return read;
    }
    if (const std::optional<QString> border = ruleset.value(u"border")) {
        for (const QStringView word : blankSeparatedWords(*border)) {
            if (std::optional<Color> read =
                    Color::fromCssString(CSSRuleset::resolveVars(word.toString(), variables)))
                return read;
        }
    }
    return std::nullopt;
}

QList<double> NodeView::strokeDash() const
{
    const QString style = resolvedBorderStyle();
    if (style == QLatin1String("dashed"))
        return {6, 4};
    if (style == QLatin1String("dotted"))
        return {2, 3};
    return {};
}

bool NodeView::showStroke() const
{
    if (resolvedBorderStyle() == QLatin1String("none"))
        return isSelected;
    return true;
}

bool NodeView::hasBackgroundImage() const
{
    if (ruleset.value(u"background-image"))
        return true;
    const std::optional<QString> background = ruleset.value(u"background");
    return background && (background->contains(QLatin1String("gradient")) ||
                          background->contains(QLatin1String("url(")));
}

NodeBody NodeView::body() const
{
    const SelectorKind selectorKind = kind();
    NodeBody body;
    body.indentLevel = selectorKind.indentLevel();
    body.prefixSymbol = selectorKind.prefixSymbol();
    body.prefixLabel = selectorKind.prefixLabel();
    body.displayName = selectorKind.displayName();

    if (showStyling) {
        body.cornerRadius = cornerRadius();
        const std::optional<Color> background = bgColor();
        body.background = background ? background->toQColor() : system.controlBackground;
        body.textColor = effectiveTextColor();
        body.fontWeight = fontWeight();
        body.verticalPadding = 14;
        if (textColorOverridden())
            body.dotColor = cssTextColor()->toQColor();
        body.showsThumbnail = hasBackgroundImage();
    } else {
        body.cornerRadius = 6;
        body.background = system.controlBackground;
        body.textColor = system.label;
        body.fontWeight = FontWeight::regular;
        body.verticalPadding = 10;
    }

    if (isSelected) {
        body.borderColor = system.accent;
        body.borderWidth = 2;
    } else {
        const std::optional<Color> declared = showStyling ? resolvedBorderColor() : std::nullopt;
        body.borderColor = declared ? declared->toQColor() : system.separator;
        body.borderWidth = 1;
        if (showStyling)
            body.borderDash = strokeDash();
    }
    body.borderOpacity = !showStyling || showStroke() ? 1 : 0;
    body.shadowColor = isSelected ? withOpacity(system.accent, 0.2) : QColor(Qt::transparent);
    return body;
}

} // namespace Ombrel
