#include "CanvasDrag.h"

#include <algorithm>
#include <cmath>

namespace Ombrel::CanvasDrag {

int dropTargetIndex(int index, double translationY, int count, double rowPitch)
{
    const double target = std::round(index + translationY / rowPitch);
    return int(std::clamp(target, 0.0, double(count)));
}

QUuid singleMoveBeforeID(const CSSRulesetList &rulesets, int dropTargetIndex)
{
    return dropTargetIndex >= 0 && dropTargetIndex < rulesets.size()
               ? rulesets[dropTargetIndex]->id()
               : QUuid();
}

QUuid blockMoveBeforeID(const CSSRulesetList &rulesets, const QSet<QUuid> &selected,
                        int dropTargetIndex)
{
    for (qsizetype i = std::max(dropTargetIndex, 0); i < rulesets.size(); ++i) {
        if (!selected.contains(rulesets[i]->id()))
            return rulesets[i]->id();
    }
    return QUuid();
}

} // namespace Ombrel::CanvasDrag
