#include "RulesetFilter.h"

#include "text/TextScan.h"

namespace Ombrel::RulesetFilter {

namespace {

constexpr char16_t firstNonAscii = 0x80;

bool isAscii(QStringView text)
{
    for (const QChar unit : text) {
        if (unit.unicode() >= firstNonAscii)
            return false;
    }
    return true;
}

// The case folding of an ASCII unit is its lower case.
constexpr char16_t asciiLower(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + (u'a' - u'A')) : unit;
}

} // namespace

QString queryOf(const QString &searchText)
{
    return TextScan::trimmedWhitespace(searchText).toString();
}

Matcher::Matcher(const QString &query) : m_query(query)
{
    if (isAscii(query)) {
        m_asciiLower.resize(query.size());
        for (qsizetype i = 0; i < query.size(); ++i)
            m_asciiLower[i] = QChar(asciiLower(query[i].unicode()));
    }
}

// An ASCII unit folds only to itself or its lower case, so a window of the
// text can match only where its first unit folds to the query's first, and
// every unit compared on the way is ASCII or sends the whole text to Qt:
// characters beyond ASCII may fold to ASCII ones (the Kelvin sign to "k").
bool Matcher::contains(QStringView text) const
{
    if (m_query.isEmpty())
        return true;
    if (m_asciiLower.isEmpty())
        return text.contains(m_query, Qt::CaseInsensitive);
    const char16_t *units = text.utf16();
    const char16_t *needle = QStringView(m_asciiLower).utf16();
    const qsizetype size = text.size();
    const qsizetype length = m_asciiLower.size();
    const char16_t first = needle[0];
    for (qsizetype at = 0; at + length <= size; ++at) {
        const char16_t unit = units[at];
        if (unit >= firstNonAscii)
            return text.contains(m_query, Qt::CaseInsensitive);
        if (asciiLower(unit) != first)
            continue;
        qsizetype matched = 1;
        for (; matched < length; ++matched) {
            const char16_t next = units[at + matched];
            if (next >= firstNonAscii)
                return text.contains(m_query, Qt::CaseInsensitive);
            if (asciiLower(next) != needle[matched])
                break;
        }
        if (matched == length)
            return true;
    }
    return false;
}

bool Matcher::matches(const CSSRuleset &ruleset) const
{
    if (m_query.isEmpty() || contains(ruleset.selector()))
        return true;
    for (const CSSProperty &property : ruleset.properties()) {
        if (contains(property.name) || contains(property.value))
            return true;
    }
    return false;
}

bool matches(const CSSRuleset &ruleset, const QString &query)
{
    return Matcher(query).matches(ruleset);
}

CSSRulesetList filtered(const CSSRulesetList &rulesets, const QString &searchText)
{
    const Matcher matcher(queryOf(searchText));
    if (matcher.isEmpty())
        return rulesets;
    CSSRulesetList result;
    for (const CSSRulesetPtr &ruleset : rulesets) {
        if (matcher.matches(*ruleset))
            result.append(ruleset);
    }
    // Where all are found, the list found is the list given, shared.
    return result.size() == rulesets.size() ? rulesets : result;
}

bool narrows(const QString &query, const QString &previous)
{
    return query.contains(previous, Qt::CaseInsensitive);
}

} // namespace Ombrel::RulesetFilter
