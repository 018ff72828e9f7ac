#pragma once

#include <QString>

#include <optional>

namespace Ombrel {

// What kind of selector a card shows, guessed from the selector text alone:
// the small mark before the name, the name itself and the indent by depth.
struct SelectorKind
{
    // The ruleset's selector, trimmed of blanks.
    QString selector;
    bool isID = false;
    bool isClass = false;
    bool isNested = false;
    // None of the three above: a tag, a pseudo-class, "*" or nothing at all.
    bool isElementSelector = false;
    // The lowercased text before the first of "[.:# >+~" is a void element.
    bool isSelfClosing = false;
    // The lowercased text before the first of ".[:#> +~*"; the two split
    // sets differ on purpose, so "*" has an empty base tag.
    QString baseTag;
    bool isTextElement = false;
    bool isWidgetElement = false;

    static SelectorKind of(const QString &rawSelector);

    // "#", "&", "/>" or, for everything else (classes included), "•".
    QString prefixLabel() const;
    // The symbol drawn instead of the label: "character" for text elements,
    // "app" for the other elements, none otherwise.
    std::optional<QString> prefixSymbol() const;
    // The selector without the mark that the prefix already shows.
    QString displayName() const;
    // Depth by combinators, at most 5; an ID is never indented. An empty
    // selector has no parts and so gives -1, which indents like 0.
    int indentLevel() const;

    // The void elements: a selector on one of them shows "/>".
    static bool isVoidElement(const QString &tag);
    // The elements that hold text and show the "character" symbol.
    static bool isTextTag(const QString &tag);
};

} // namespace Ombrel
