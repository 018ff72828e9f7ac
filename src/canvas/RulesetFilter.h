#pragma once

#include "model/CSSRuleset.h"

#include <QString>

// The filter of the card list.
namespace Ombrel::RulesetFilter {

// The search text trimmed of spaces and tabs; an empty query keeps all.
QString queryOf(const QString &searchText);

// Whether the query is contained, ignoring case, in the selector or in a
// declaration's raw name or value.
bool matches(const CSSRuleset &ruleset, const QString &query);

// The rulesets that match the search text, in file order.
CSSRulesetList filtered(const CSSRulesetList &rulesets, const QString &searchText);

} // namespace Ombrel::RulesetFilter
