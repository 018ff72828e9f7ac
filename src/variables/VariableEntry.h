#pragma once

#include <QList>
#include <QString>
#include <QUuid>

namespace Ombrel {

// One custom property of a file as the variables tab lists it, identified by
// its property's id.
struct VariableEntry
{
    QUuid propID;
    QUuid rulesetID;
    QString name;
    QString value;

    friend bool operator==(const VariableEntry &, const VariableEntry &) = default;
};

// An entry of a group with its position among the entries the list shows.
struct VarGroupItem
{
    int flatIdx = 0;
    VariableEntry entry;

    friend bool operator==(const VarGroupItem &, const VarGroupItem &) = default;
};

// The entries of one ruleset that the filter keeps. A collapsed group keeps
// its count and holds no items.
struct VarGroup
{
    // The ruleset's id.
    QUuid id;
    QString selector;
    // Entries the filter kept, whether or not the group is collapsed.
    int totalCount = 0;
    QList<VarGroupItem> items;

    friend bool operator==(const VarGroup &, const VarGroup &) = default;
};

} // namespace Ombrel
