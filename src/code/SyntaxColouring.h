#pragma once

#include "knowledge/Color.h"

#include <QList>
#include <QString>
#include <QStringView>

namespace Ombrel {

// What a stretch of the code tab's text is painted as. The order is the order
// in which the rules run: where two rules match the same text, the later one
// wins.
enum class SyntaxRole : quint8 {
    None,
    Comment,
    AtRule,
    Selector,
    PropertyName,
    VariableReference,
    Value,
    Punctuation,
};

// A stretch of text in one role; runs never overlap, and neighbouring runs
// differ in role.
struct SyntaxRun
{
    qsizetype start = 0;
    qsizetype length = 0;
    SyntaxRole role = SyntaxRole::None;

    friend bool operator==(const SyntaxRun &, const SyntaxRun &) = default;
};

struct ColouredRun
{
    qsizetype start = 0;
    qsizetype length = 0;
    Color colour;

    friend bool operator==(const ColouredRun &, const ColouredRun &) = default;
};

// A plain text painter over the whole text, which knows nothing of the
// parser: seven regular expressions, each matched across the whole text in
// the role order above, each whole match painted over what earlier rules
// painted. Comments are painted first and so lose to any later rule that
// matches inside them; that is by design. Positions are UTF-16 offsets.
namespace SyntaxColouring {

// The rule of a role, as given to QRegularExpression (with the multiline
// option and Unicode properties); empty for SyntaxRole::None.
QString pattern(SyntaxRole role);

// The roles of the text by the seven rules, text that no rule matches left
// out. A lone surrogate is matched as U+FFFD, which no rule takes, so that
// half of a pair pasted in does not leave the whole text unmatched.
QList<SyntaxRun> roleRuns(QStringView text);

// The colour of a role in a dark or a light appearance; the comment colour
// is the same in both. SyntaxRole::None has no colour of its own: such text
// keeps the text colour of the palette.
Color colour(SyntaxRole role, bool dark);

// roleRuns() with the colours of the appearance.
QList<ColouredRun> colourRuns(QStringView text, bool dark);

} // namespace SyntaxColouring

} // namespace Ombrel
