#include "VariableListing.h"

#include "text/TextScan.h"

namespace Ombrel::VariableListing {

QList<VariableEntry> entries(const CSSRulesetList &rulesets)
{
    QList<VariableEntry> result;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        for (const CSSProperty &property : ruleset->properties()) {
            if (property.isCustomProperty())
                result.append({property.id, ruleset->id(), property.name, property.value});
        }
    }
    return result;
}

RulesetVariables variablesOf(const CSSRuleset &ruleset)
{
    RulesetVariables variables{ruleset.id(), ruleset.selector(), {}};
    for (const CSSProperty &property : ruleset.properties()) {
        if (property.isCustomProperty())
            variables.entries.append({property.id, ruleset.id(), property.name, property.value});
    }
    return variables;
}

QList<RulesetVariables> variablesByRuleset(const CSSRulesetList &rulesets)
{
    QList<RulesetVariables> result;
    result.reserve(rulesets.size());
    for (const CSSRulesetPtr &ruleset : rulesets)
        result.append(variablesOf(*ruleset));
    return result;
}

QString queryOf(const QString &searchText)
{
    return TextScan::trimmedWhitespace(searchText).toString();
}

bool matches(const VariableEntry &entry, const QString &query)
{
    return query.isEmpty() || entry.name.contains(query, Qt::CaseInsensitive) ||
           entry.value.contains(query, Qt::CaseInsensitive);
}

Listing listing(const QList<RulesetVariables> &rulesets, const QString &searchText,
                const QSet<QUuid> &collapsed)
{
    const QString query = queryOf(searchText);
    Listing result;
    int flatIdx = 0;
    for (const RulesetVariables &ruleset : rulesets) {
        if (ruleset.entries.isEmpty())
            continue;
        result.entryCount += int(ruleset.entries.size());
        const bool isCollapsed = collapsed.contains(ruleset.id);
        VarGroup group;
        for (const VariableEntry &entry : ruleset.entries) {
            if (!matches(entry, query))
                continue;
            ++group.totalCount;
            if (isCollapsed)
                continue;
            result.flat.append(entry);
            group.items.append({flatIdx++, entry});
        }
        if (group.totalCount == 0)
            continue;
        group.id = ruleset.id;
        group.selector = ruleset.selector;
        result.groups.append(std::move(group));
    }
    return result;
}

Listing listing(const CSSRulesetList &rulesets, const QString &searchText,
                const QSet<QUuid> &collapsed)
{
    return listing(variablesByRuleset(rulesets), searchText, collapsed);
}

QList<VariableEntry> filteredEntries(const CSSRulesetList &rulesets, const QString &searchText,
                                     const QSet<QUuid> &collapsed)
{
    return listing(rulesets, searchText, collapsed).flat;
}

QList<VarGroup> filteredGroups(const CSSRulesetList &rulesets, const QString &searchText,
                               const QSet<QUuid> &collapsed)
{
    return listing(rulesets, searchText, collapsed).groups;
}

} // namespace Ombrel::VariableListing
