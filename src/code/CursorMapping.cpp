#include "CursorMapping.h"

#include "text/TextScan.h"

#include <QHash>
#include <QTextBoundaryFinder>

#include <memory>
#include <vector>

namespace Ombrel::CursorMapping {

namespace {

// Whether a position of the text lies between two user-perceived
// characters. Text in which nothing can join is answered from the two
// units around the position; the text is segmented only when needed.
class Boundaries
{
public:
    explicit Boundaries(QStringView text) : m_text(text) {}

    bool at(qsizetype pos) const
    {
        if (pos <= 0 || pos >= m_text.size())
            return true;
        const char16_t previous = m_text[pos - 1].unicode();
        const char16_t next = m_text[pos].unicode();
        if (previous < TextScan::firstPrependingUnit && next < TextScan::firstExtendingUnit)
            return !(previous == u'\r' && next == u'\n');
        if (!m_finder) {
            m_copy = m_text.toString();
            m_finder = std::make_unique<QTextBoundaryFinder>(QTextBoundaryFinder::Grapheme, m_copy);
        }
        m_finder->setPosition(pos);
        return m_finder->isAtBoundary();
    }

    bool wholeCharacters(qsizetype start, qsizetype end) const { return at(start) && at(end); }

private:
    QStringView m_text;
    mutable QString m_copy;
    mutable std::unique_ptr<QTextBoundaryFinder> m_finder;
};

qsizetype findOccurrence(QStringView text, QStringView target, qsizetype n,
                         const Boundaries &boundaries)
{
    if (target.isEmpty() || n < 0)
        return -1;
    qsizetype count = 0;
    for (qsizetype at = text.indexOf(target); at >= 0;) {
        if (!boundaries.wholeCharacters(at, at + target.size())) {
            at = text.indexOf(target, at + 1);
            continue;
        }
        if (count == n)
            return at;
        ++count;
        at = text.indexOf(target, at + target.size());
    }
    return -1;
}

// The first brace c at or after from that is a character of its own, or -1.
qsizetype findBrace(QStringView text, char16_t c, qsizetype from, const Boundaries &boundaries)
{
    for (qsizetype at = text.indexOf(QChar(c), from); at >= 0;
         at = text.indexOf(QChar(c), at + 1)) {
        if (boundaries.wholeCharacters(at, at + 1))
            return at;
    }
    return -1;
}

QString trimmedSelector(const CSSRuleset &ruleset)
{
    return TextScan::trimmedWhitespace(ruleset.selector()).toString();
}

// The lines of text[from, to), split at every line feed that is a character
// of its own (the pair CR LF is one character, and no line feed).
template<typename Visit>
void forEachLine(QStringView text, qsizetype from, qsizetype to, Visit visit)
{
    qsizetype lineStart = from;
    for (qsizetype at = from; at <= to; ++at) {
        if (at < to && (text[at] != u'\n' || (at > 0 && text[at - 1] == u'\r')))
            continue;
        if (!visit(lineStart, at))
            return;
        lineStart = at + 1;
    }
}

// Whether the line, blanks trimmed, begins with name followed by ":" or
// " :", the prefix ending between two characters.
bool declares(QStringView text, qsizetype lineStart, qsizetype lineEnd, const QString &name,
              const Boundaries &boundaries)
{
    const QStringView line =
        TextScan::trimmedWhitespace(text.sliced(lineStart, lineEnd - lineStart));
    if (!line.startsWith(name))
        return false;
    const qsizetype lineOffset = line.data() - text.data();
    for (const QStringView colon : {QStringView(u":"), QStringView(u" :")}) {
        if (line.sliced(name.size()).startsWith(colon) &&
            boundaries.at(lineOffset + name.size() + colon.size()))
            return true;
    }
    return false;
}

qsizetype indexOfID(const CSSRulesetList &rulesets, const QUuid &id)
{
    for (qsizetype i = 0; i < rulesets.size(); ++i) {
        if (rulesets[i]->id() == id)
            return i;
    }
    return -1;
}

// The selector and its occurrence count for the ruleset at index.
std::pair<QString, qsizetype> selectorOccurrence(const CSSRulesetList &rulesets, qsizetype index)
{
    const QString target = trimmedSelector(*rulesets[index]);
    qsizetype n = 0;
    for (qsizetype i = 0; i < index; ++i) {
        if (trimmedSelector(*rulesets[i]) == target)
            ++n;
    }
    return {target, n};
}

// Every selector searched at once in one pass over the text (Aho-Corasick),
// so that asking where each of many rulesets is costs one reading of the
// text rather than one per selector.
class SelectorSearch
{
public:
    int add(const QString &pattern)
    {
        const auto found = m_patternIndex.constFind(pattern);
        if (found != m_patternIndex.constEnd())
            return *found;
        const int index = int(m_patterns.size());
        m_patterns.append(pattern);
        m_patternIndex.insert(pattern, index);
        int node = 0;
        for (const QChar unit : pattern) {
            const int next = child(node, unit.unicode());
            if (next >= 0) {
                node = next;
                continue;
            }
            m_nodes.push_back(Node());
            const int created = int(m_nodes.size()) - 1;
            if (node == 0)
                m_rootChildren[unit.unicode()] = created;
            m_nodes[size_t(node)].children.push_back({unit.unicode(), created});
            node = created;
        }
        m_nodes[size_t(node)].pattern = index;
        return index;
    }

    qsizetype patternLength(int pattern) const { return m_patterns[pattern].size(); }
    qsizetype longestPattern() const
    {
        qsizetype longest = 0;
        for (const QString &pattern : m_patterns)
            longest = std::max(longest, pattern.size());
        return longest;
    }

    // Links every node to the longest proper suffix of its text that is also
    // in the trie, and to the nearest such suffix that is a whole pattern.
    void finish()
    {
        std::vector<int> queue;
        for (const auto &[unit, node] : m_nodes[0].children)
            queue.push_back(node);
        for (size_t head = 0; head < queue.size(); ++head) {
            const int node = queue[head];
            for (const auto &[unit, next] : m_nodes[size_t(node)].children) {
                int fallback = m_nodes[size_t(node)].fail;
                int target = child(fallback, unit);
                while (target < 0 && fallback != 0) {
                    fallback = m_nodes[size_t(fallback)].fail;
                    target = child(fallback, unit);
                }
                Node &nextNode = m_nodes[size_t(next)];
                nextNode.fail = target >= 0 ? target : 0;
                const Node &failNode = m_nodes[size_t(nextNode.fail)];
                nextNode.output = failNode.pattern >= 0 ? nextNode.fail : failNode.output;
                queue.push_back(next);
            }
        }
    }

    // Calls found(pattern, end) for every occurrence ending at or before
    // limit, in the order of their ends.
    template<typename Found> void scan(QStringView text, qsizetype limit, Found found) const
    {
        int state = 0;
        for (qsizetype at = 0; at < limit; ++at) {
            const char16_t unit = text[at].unicode();
            int next = child(state, unit);
            while (next < 0 && state != 0) {
                state = m_nodes[size_t(state)].fail;
                next = child(state, unit);
            }
            state = next >= 0 ? next : 0;
            for (int node = m_nodes[size_t(state)].pattern >= 0 ? state
                                                                : m_nodes[size_t(state)].output;
                 node >= 0; node = m_nodes[size_t(node)].output)
                found(m_nodes[size_t(node)].pattern, at + 1);
        }
    }

private:
    struct Node
    {
        int fail = 0;
        // The nearest node along the fail links that ends a pattern, or -1.
        int output = -1;
        int pattern = -1;
        std::vector<std::pair<char16_t, int>> children;
    };

    // Below the root, selectors seldom branch: a node's few children are
    // looked through; the root's, many, are looked up.
    int child(int node, char16_t unit) const
    {
        if (node == 0)
            return m_rootChildren[unit];
        for (const auto &[childUnit, childNode] : m_nodes[size_t(node)].children) {
            if (childUnit == unit)
                return childNode;
        }
        return -1;
    }

    std::vector<Node> m_nodes{Node()};
    std::vector<int> m_rootChildren = std::vector<int>(0x10000, -1);
    QList<QString> m_patterns;
    QHash<QString, int> m_patternIndex;
};

} // namespace

qsizetype findOccurrence(QStringView text, QStringView target, qsizetype n)
{
    return findOccurrence(text, target, n, Boundaries(text));
}

RulesetAndProp rulesetAndPropAt(qsizetype utf16Offset, QStringView text,
                                const CSSRulesetList &rulesets)
{
    if (text.isEmpty() || utf16Offset < 0)
        return {};
    const Boundaries boundaries(text);

    // The occurrence of each ruleset's selector, counted before any search,
    // so that a ruleset that is not found still counts.
    SelectorSearch search;
    QHash<QString, qsizetype> seen;
    std::vector<std::pair<int, qsizetype>> wanted(size_t(rulesets.size()), {-1, 0});
    for (qsizetype i = 0; i < rulesets.size(); ++i) {
        const QString selector = trimmedSelector(*rulesets[i]);
        if (selector.isEmpty())
            continue;
        const qsizetype n = seen.value(selector, 0);
        seen.insert(selector, n + 1);
        wanted[size_t(i)] = {search.add(selector), n};
    }
    search.finish();

    // Only a match that starts at or before the cursor can hold it.
    std::vector<QList<qsizetype>> occurrences(size_t(seen.size()));
    std::vector<qsizetype> resumeAt(size_t(seen.size()), 0);
    std::vector<qsizetype> needed(size_t(seen.size()), 0);
    for (const auto &[pattern, n] : wanted) {
        if (pattern >= 0)
            needed[size_t(pattern)] = std::max(needed[size_t(pattern)], n + 1);
    }
    const qsizetype limit = std::min(text.size(), utf16Offset + search.longestPattern());
    search.scan(text, limit, [&](int pattern, qsizetype end) {
        QList<qsizetype> &found = occurrences[size_t(pattern)];
        const qsizetype start = end - search.patternLength(pattern);
        if (found.size() >= needed[size_t(pattern)] || start < resumeAt[size_t(pattern)] ||
            !boundaries.wholeCharacters(start, end))
            return;
        found.append(start);
        resumeAt[size_t(pattern)] = end;
    });

    for (qsizetype i = 0; i < rulesets.size(); ++i) {
        const auto [pattern, n] = wanted[size_t(i)];
        if (pattern < 0 || occurrences[size_t(pattern)].size() <= n)
            continue;
        const qsizetype start = occurrences[size_t(pattern)][n];
        const qsizetype open =
            findBrace(text, u'{', start + search.patternLength(pattern), boundaries);
        const qsizetype close = open < 0 ? -1 : findBrace(text, u'}', open + 1, boundaries);
        if (close < 0 || utf16Offset < start || utf16Offset > close + 1)
            continue;

        RulesetAndProp hit{rulesets[i]->id(), QUuid()};
        forEachLine(text, open + 1, close, [&](qsizetype lineStart, qsizetype lineEnd) {
            if (utf16Offset < lineStart || utf16Offset > lineEnd)
                return true;
            for (const CSSProperty &property : rulesets[i]->properties()) {
                if (declares(text, lineStart, lineEnd, property.name, boundaries)) {
                    hit.propID = property.id;
                    break;
                }
            }
            return false;
        });
        return hit;
    }
    return {};
}

std::optional<Placement> rulesetPlacement(QStringView text, const CSSRulesetList &rulesets,
                                          const QUuid &rulesetID)
{
    const qsizetype index = indexOfID(rulesets, rulesetID);
    if (index < 0 || trimmedSelector(*rulesets[index]).isEmpty())
        return std::nullopt;
    const auto [target, n] = selectorOccurrence(rulesets, index);
    const qsizetype start = findOccurrence(text, target, n);
    if (start < 0)
        return std::nullopt;
    return Placement{start, start, target.size()};
}

std::optional<Placement> propertyPlacement(QStringView text, const CSSRulesetList &rulesets,
                                           const QUuid &rulesetID, const QUuid &propID)
{
    const qsizetype index = indexOfID(rulesets, rulesetID);
    if (index < 0)
        return std::nullopt;
    const CSSPropertyList &properties = rulesets[index]->properties();
    const auto property =
        std::find_if(properties.begin(), properties.end(),
                     [&propID](const CSSProperty &candidate) { return candidate.id == propID; });
    if (property == properties.end())
        return std::nullopt;

    const Boundaries boundaries(text);
    const auto [target, n] = selectorOccurrence(rulesets, index);
    const qsizetype start = findOccurrence(text, target, n, boundaries);
    if (start < 0)
        return std::nullopt;
    const qsizetype open = findBrace(text, u'{', start + target.size(), boundaries);
    const qsizetype close = open < 0 ? -1 : findBrace(text, u'}', open + 1, boundaries);
    if (close < 0)
        return std::nullopt;

    std::optional<Placement> placement;
    forEachLine(text, open + 1, close, [&](qsizetype lineStart, qsizetype lineEnd) {
        if (!declares(text, lineStart, lineEnd, property->name, boundaries))
            return true;
        placement = Placement{lineStart, lineStart, std::min<qsizetype>(lineEnd - lineStart, 60)};
        return false;
    });
    return placement;
}

} // namespace Ombrel::CursorMapping
