#pragma once

#include "model/CSSRuleset.h"

#include <QStringView>
#include <QUuid>

#include <optional>

namespace Ombrel {

// Between the code tab's text and the model: which ruleset and declaration
// a cursor is in, and where the cursor goes for a ruleset or a declaration.
// Text and model share no positions (the text may have been edited by hand),
// so every question searches the text afresh by selector, counting the
// rulesets that share a selector. That is a plain substring search on
// purpose, with its known limit: ".btn" is found inside ".btn-large" first.
// Offsets are UTF-16 offsets; a match or a brace counts only where it is
// made of whole user-perceived characters.
namespace CursorMapping {

struct RulesetAndProp
{
    // Null when none.
    QUuid rulesetID;
    QUuid propID;

    friend bool operator==(const RulesetAndProp &, const RulesetAndProp &) = default;
};

// Where the cursor goes, and the range to scroll into view.
struct Placement
{
    qsizetype cursor = 0;
    qsizetype scrollStart = 0;
    qsizetype scrollLength = 0;

    friend bool operator==(const Placement &, const Placement &) = default;
};

// The offset of occurrence n (counted from 0) of target in text, each search
// going on behind the end of the previous match; -1 when there are fewer.
qsizetype findOccurrence(QStringView text, QStringView target, qsizetype n);

// The ruleset whose selector, body and closing brace hold the offset (both
// ends included), and the declaration of the line it is on: the first
// property whose name followed by ":" or " :" begins that line, blanks
// trimmed. Rulesets whose selector is blank are passed over; a cursor
// outside every ruleset gives none, none.
RulesetAndProp rulesetAndPropAt(qsizetype utf16Offset, QStringView text,
                                const CSSRulesetList &rulesets);

// The cursor at the start of the ruleset's selector in the text (the n-th
// occurrence for the n-th ruleset with that selector), the selector scrolled
// into view. None for a blank selector, a ruleset not among rulesets or a
// selector not found.
std::optional<Placement> rulesetPlacement(QStringView text, const CSSRulesetList &rulesets,
                                          const QUuid &rulesetID);

// The cursor at the first column of the line in the ruleset's body that
// declares a property of that name (the first such line, whichever
// declaration of the name propID is), at most 60 units of it scrolled into
// view. None when the ruleset, the property or the line is not found.
std::optional<Placement> propertyPlacement(QStringView text, const CSSRulesetList &rulesets,
                                           const QUuid &rulesetID, const QUuid &propID);

} // namespace CursorMapping

} // namespace Ombrel
