#pragma once

#include <Qt>

namespace Ombrel::NodeRoles {

// What the canvas's list model answers for one card and the card delegate
// reads. The file-wide inputs of a card (custom properties, the file's path,
// styling on or off) are set on the delegate by the canvas instead.
enum : int {
    // The CSSRuleset* of the card, as a QVariant holding a QObject*.
    Ruleset = Qt::UserRole + 1,
    // bool: the ruleset is among the selected ones.
    Selected,
    // bool: the card hosts the inline selector editor.
    EditingSelector,
};

} // namespace Ombrel::NodeRoles
