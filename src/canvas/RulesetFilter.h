#pragma once

#include "model/CSSRuleset.h"

#include <QString>
#include <QStringView>

// The filter of the card list.
namespace Ombrel::RulesetFilter {

// The search text trimmed of spaces and tabs; an empty query keeps all.
QString queryOf(const QString &searchText);

// Whether text contains query, ignoring case exactly as
// QStringView::contains(query, Qt::CaseInsensitive) does, made once for a
// pass over many texts: an ASCII query is searched for in ASCII text without
// folding the case of every character, and any other text goes to Qt.
class Matcher
{
public:
    explicit Matcher(const QString &query);

    bool isEmpty() const { return m_query.isEmpty(); }
    bool contains(QStringView text) const;
    // Whether the query is contained in the selector or in a declaration's
    // raw name or value; an empty query matches every ruleset.
    bool matches(const CSSRuleset &ruleset) const;

private:
    QString m_query;
    // The query in ASCII lower case, when it is all ASCII; empty otherwise.
    QString m_asciiLower;
};

// Whether the query is contained, ignoring case, in the selector or in a
// declaration's raw name or value.
bool matches(const CSSRuleset &ruleset, const QString &query);

// The rulesets that match the search text, in their order.
CSSRulesetList filtered(const CSSRulesetList &rulesets, const QString &searchText);

// Whether every ruleset that the query finds is also found by previous:
// previous is contained in query, ignoring case, and so a list filtered by
// previous can be narrowed instead of filtering the whole file again.
bool narrows(const QString &query, const QString &previous);

} // namespace Ombrel::RulesetFilter
