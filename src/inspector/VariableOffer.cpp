#include "VariableOffer.h"

#include "knowledge/CSSPropertyDatabase.h"
#include "knowledge/Color.h"
#include "text/TextScan.h"

#include <algorithm>

namespace Ombrel {

std::shared_ptr<const VariableOffer> VariableOffer::from(const CSSVariables &variables)
{
    auto offer = std::make_shared<VariableOffer>();
    offer->variables = variables;
    offer->all.reserve(variables.size());
    for (auto it = variables.cbegin(); it != variables.cend(); ++it)
        offer->all.append({it.key(), it.value()});
    std::sort(offer->all.begin(), offer->all.end(),
              [](const VariableChoice &a, const VariableChoice &b) { return a.name < b.name; });
    for (const VariableChoice &choice : std::as_const(offer->all)) {
        if (Color::fromCssString(choice.value))
            offer->colours.append(choice);
    }
    return offer;
}

const VariableChoices &VariableOffer::compatibleWith(const QString &propertyName) const
{
    return CSSPropertyDatabase::isColorProperty(propertyName) ? colours : all;
}

std::optional<QString> referencedVariable(const QString &value)
{
    const QStringView text = TextScan::trimmedWhitespace(value);
    if (!text.startsWith(u"var(--", Qt::CaseInsensitive))
        return std::nullopt;
    // The closing parenthesis has to be a character of its own: one with a
    // combining mark on it closes nothing.
    const qsizetype last = TextScan::lastCharacterStart(text);
    if (text.sliced(last) != u")")
        return std::nullopt;
    const QStringView inside = text.sliced(4, last - 4);
    const qsizetype comma = inside.indexOf(u',');
    return TextScan::trimmedWhitespace(comma < 0 ? inside : inside.first(comma)).toString();
}

} // namespace Ombrel
