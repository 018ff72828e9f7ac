#pragma once

#include <Qt>

namespace Ombrel::VariableRoles {

// What a row of the variables list is.
enum class Kind { Header, Entry };

// What the variables list model answers for a row and its delegate reads.
// Qt::DisplayRole is the selector of a header and the name of an entry.
enum : int {
    // Kind, as an int.
    RowKind = Qt::UserRole + 1,

    // Of a header: the ruleset's selector, "{n} var" or "{n} vars" for the
    // entries the filter keeps, and whether the group is folded.
    Selector,
    CountText,
    Collapsed,

    // Of both: the ruleset's id (a header's group, an entry's ruleset).
    RulesetID,

    // Of an entry: the property's id, its name and raw value, its position
    // among the entries shown, and its row state.
    PropID,
    Name,
    Value,
    FlatIdx,
    Selected,
    // The value or the name is being edited.
    Editing,
    EditingValue,
    RenamingName,
    // The texts the row shows: the entry's, or what is being typed.
    LocalValue,
    LocalName,
    // Whether the shown value reads as a colour, which gets a swatch.
    ColorValue,
};

} // namespace Ombrel::VariableRoles
