#include "RulesetFilter.h"

#include "text/TextScan.h"

namespace Ombrel::RulesetFilter {

QString queryOf(const QString &searchText)
{
    return TextScan::trimmedWhitespace(searchText).toString();
}

bool matches(const CSSRuleset &ruleset, const QString &query)
{
    if (query.isEmpty() || ruleset.selector().contains(query, Qt::CaseInsensitive))
        return true;
    for (const CSSProperty &property : ruleset.properties()) {
        if (property.name.contains(query, Qt::CaseInsensitive) ||
            property.value.contains(query, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

CSSRulesetList filtered(const CSSRulesetList &rulesets, const QString &searchText)
{
    const QString query = queryOf(searchText);
    if (query.isEmpty())
        return rulesets;
    CSSRulesetList result;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (matches(*ruleset, query))
            result.append(ruleset);
    }
    return result;
}

} // namespace Ombrel::RulesetFilter
