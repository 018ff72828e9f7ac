#pragma once

#include "VariableEntry.h"
#include "model/CSSRuleset.h"

#include <QSet>
#include <QString>
#include <QUuid>

// What the variables tab lists of a file: its custom properties by ruleset,
// through the filter, with the groups the user folded.
namespace Ombrel::VariableListing {

// Every custom property of the rulesets, in file order: a name declared
// twice, in one ruleset or in two, gives two entries.
QList<VariableEntry> entries(const CSSRulesetList &rulesets);

// The custom properties of one ruleset, with what its group shows of it.
struct RulesetVariables
{
    QUuid id;
    QString selector;
    QList<VariableEntry> entries;
};
RulesetVariables variablesOf(const CSSRuleset &ruleset);
// For each ruleset, in file order.
QList<RulesetVariables> variablesByRuleset(const CSSRulesetList &rulesets);

// The filter text trimmed of spaces and tabs; an empty query keeps all.
QString queryOf(const QString &searchText);
// Whether the query is in the entry's name or raw value, ignoring case.
bool matches(const VariableEntry &entry, const QString &query);

// The whole reading of one state of the file, made in one pass.
struct Listing
{
    // A group for each ruleset with an entry the filter keeps.
    QList<VarGroup> groups;
    // The entries the filter keeps outside the collapsed groups, in file
    // order: the flat list in which drag positions count.
    QList<VariableEntry> flat;
    // The file's entries, filter or not.
    int entryCount = 0;
};
Listing listing(const QList<RulesetVariables> &rulesets, const QString &searchText,
                const QSet<QUuid> &collapsed);
Listing listing(const CSSRulesetList &rulesets, const QString &searchText,
                const QSet<QUuid> &collapsed);

QList<VariableEntry> filteredEntries(const CSSRulesetList &rulesets, const QString &searchText,
                                     const QSet<QUuid> &collapsed);
QList<VarGroup> filteredGroups(const CSSRulesetList &rulesets, const QString &searchText,
                               const QSet<QUuid> &collapsed);

} // namespace Ombrel::VariableListing
