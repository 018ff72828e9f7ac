#include "SelectorKind.h"

#include "text/TextScan.h"

#include <QSet>

#include <algorithm>

namespace Ombrel {

namespace {

// The text before the first of the given characters, lowercased.
QString lowercasedHead(const QString &selector, QStringView stops)
{
    const auto end = std::find_if(selector.begin(), selector.end(),
                                  [stops](QChar c) { return stops.contains(c); });
    return QStringView(selector.begin(), end).toString().toLower();
}

} // namespace

bool SelectorKind::isVoidElement(const QString &tag)
{
    static const QSet<QString> voidElements = {
        QStringLiteral("img"),   QStringLiteral("input"),  QStringLiteral("br"),
        QStringLiteral("hr"),    QStringLiteral("meta"),   QStringLiteral("link"),
        QStringLiteral("area"),  QStringLiteral("base"),   QStringLiteral("col"),
        QStringLiteral("embed"), QStringLiteral("source"),
    };
    return voidElements.contains(tag);
}

bool SelectorKind::isTextTag(const QString &tag)
{
    static const QSet<QString> textElements = {
        QStringLiteral("p"),          QStringLiteral("h1"),         QStringLiteral("h2"),
        QStringLiteral("h3"),         QStringLiteral("h4"),         QStringLiteral("h5"),
        QStringLiteral("h6"),         QStringLiteral("span"),       QStringLiteral("a"),
        QStringLiteral("strong"),     QStringLiteral("em"),         QStringLiteral("b"),
        QStringLiteral("i"),          QStringLiteral("small"),      QStringLiteral("s"),
        QStringLiteral("u"),          QStringLiteral("mark"),       QStringLiteral("label"),
        QStringLiteral("li"),         QStringLiteral("dt"),         QStringLiteral("dd"),
        QStringLiteral("td"),         QStringLiteral("th"),         QStringLiteral("caption"),
        QStringLiteral("blockquote"), QStringLiteral("pre"),        QStringLiteral("code"),
        QStringLiteral("q"),          QStringLiteral("cite"),       QStringLiteral("abbr"),
        QStringLiteral("time"),       QStringLiteral("figcaption"), QStringLiteral("legend"),
        QStringLiteral("summary"),
    };
    return textElements.contains(tag);
}

SelectorKind SelectorKind::of(const QString &rawSelector)
{
    SelectorKind kind;
    kind.selector = TextScan::trimmedWhitespace(rawSelector).toString();
    kind.isID = kind.selector.startsWith(u'#');
    kind.isClass = kind.selector.startsWith(u'.');
    kind.isNested = kind.selector.startsWith(u'&');
    kind.isElementSelector = !kind.isID && !kind.isClass && !kind.isNested;
    kind.isSelfClosing = isVoidElement(lowercasedHead(kind.selector, u"[.:# >+~"));
    kind.baseTag = lowercasedHead(kind.selector, u".[:#> +~*");
    const bool elementThatHolds = kind.isElementSelector && !kind.isSelfClosing;
    kind.isTextElement = elementThatHolds && isTextTag(kind.baseTag);
    kind.isWidgetElement = elementThatHolds && !isTextTag(kind.baseTag);
    return kind;
}

QString SelectorKind::prefixLabel() const
{
    if (isID)
        return QStringLiteral("#");
    if (isNested)
        return QStringLiteral("&");
    if (isSelfClosing)
        return QStringLiteral("/>");
    return QStringLiteral("•");
}

std::optional<QString> SelectorKind::prefixSymbol() const
{
    if (isTextElement)
        return QStringLiteral("character");
    if (isWidgetElement)
        return QStringLiteral("app");
    return std::nullopt;
}

QString SelectorKind::displayName() const
{
    if (!isID && !isClass && !isNested)
        return selector;
    const QString rest = selector.sliced(TextScan::nextCharacterEnd(selector, 0));
    if (isNested)
        return TextScan::trimmedWhitespace(rest).toString();
    return rest;
}

int SelectorKind::indentLevel() const
{
    if (isID)
        return 0;
    // The non-empty parts between combinator characters.
    int parts = 0;
    bool inPart = false;
    for (const QChar c : selector) {
        const bool separates = QStringView(u" >+~").contains(c);
        if (!separates && !inPart)
            ++parts;
        inPart = !separates;
    }
    return std::min(parts - 1, 5);
}

} // namespace Ombrel
