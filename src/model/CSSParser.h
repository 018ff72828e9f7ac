#pragma once

#include "CSSProperty.h"
#include "CSSRuleset.h"

#include <QPointF>
#include <QString>
#include <QStringView>

namespace Ombrel {

// A tolerant single-pass reader of stylesheet text. It knows block comments,
// blocks between braces and "name: value" declarations, and nothing else:
// at-rules are dropped, and whatever else CSS holds falls out of those three
// rules in a fixed, documented way. It never fails; text it cannot read just
// yields fewer rulesets.
namespace CSSParser {

// What a parse met and left out as a whole, which a save therefore drops:
// at-rules at the top level (blocks, and statements such as "@import ...;")
// and block comments.
struct DroppedCounts
{
    qsizetype atRules = 0;
    qsizetype comments = 0;

    bool operator==(const DroppedCounts &) const = default;
};

CSSRulesetList parse(const QString &css);
// The same parse, counting on the way what it leaves out.
CSSRulesetList parse(const QString &css, DroppedCounts &dropped);

// Removes every "/* ... */" wherever it stands. An unterminated comment
// swallows the rest of the text except its last character.
QString removeComments(const QString &text);

// Cuts a block's inside at every ";" and each piece at its first ":"; pieces
// with no colon or an empty name or value are skipped.
CSSPropertyList parseProperties(QStringView body);

// Where the n-th ruleset of a file is placed: (140, 40 + n * 210).
QPointF positionForIndex(qsizetype index);

} // namespace CSSParser

} // namespace Ombrel
