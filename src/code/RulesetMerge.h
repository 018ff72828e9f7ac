#pragma once

#include "model/CSSFile.h"
#include "model/CSSRuleset.h"

#include <QList>
#include <QString>

namespace Ombrel {

// A ruleset as the parser read it from the code tab's text, before it is
// merged into a file.
struct ParsedRuleset
{
    QString selector;
    CSSPropertyList properties;

    friend bool operator==(const ParsedRuleset &, const ParsedRuleset &) = default;
};

// How the rulesets parsed from the code tab's text replace a file's
// rulesets while keeping their identity. Rulesets are matched by selector
// text, never by position: each parsed ruleset, in text order, takes the
// first ruleset of the file with exactly its selector that no earlier one
// took, so equal selectors pair in order. A kept ruleset (its object, id,
// position and the undo steps and selection that hold it) takes the parsed
// properties wholesale; a parsed ruleset with no partner is new; a ruleset
// of the file that no parsed one took leaves it. The file's order becomes
// the text's. Linear in the number of rulesets.
namespace RulesetMerge {

// The parsed objects themselves join the file when they have no partner.
void mergeRulesets(CSSFile &file, const CSSRulesetList &parsed);

// As a fresh parse would give them: every property takes a new id, and a
// ruleset without a partner is made at the position of its index.
void mergeRulesets(CSSFile &file, const QList<ParsedRuleset> &parsed);

} // namespace RulesetMerge

} // namespace Ombrel
