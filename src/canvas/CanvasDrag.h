#pragma once

#include "model/CSSRuleset.h"

#include <QSet>
#include <QUuid>

// Where a row dragged on a list drops: a drag reorders the full list in
// place, one row at a time (the cards of the canvas, the variables).
namespace Ombrel::CanvasDrag {

// The index the row at index would drop before after a vertical drag of
// translationY points (halves round away from zero), within 0 and count,
// where one row takes rowPitch points: the height of a row and the gap
// below it, as the list paints them, so that the index stays the row under
// the pointer however far the row travels.
int dropTargetIndex(int index, double translationY, int count, double rowPitch);

// For a single card: the ruleset at the drop index, or null behind the last.
QUuid singleMoveBeforeID(const CSSRulesetList &rulesets, int dropTargetIndex);

// For a block of selected cards: the first unselected ruleset at or behind
// the drop index, or null when none is.
QUuid blockMoveBeforeID(const CSSRulesetList &rulesets, const QSet<QUuid> &selected,
                        int dropTargetIndex);

} // namespace Ombrel::CanvasDrag
