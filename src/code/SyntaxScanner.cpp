#include "SyntaxScanner.h"

#include <QChar>

#include <algorithm>
#include <optional>

namespace Ombrel {

namespace {

enum Rule { Comment, AtRule, Selector, PropertyName, VariableReference, Value, Punctuation };

// \s with Unicode properties: the separators, the horizontal and the vertical
// white space of the regular expression engine. All of them are single units.
bool isSpace(char16_t unit)
{
    if (unit < 0x80)
        return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    switch (unit) {
    case 0x85:
    case 0xA0:
    case 0x1680:
    case 0x180E:
    case 0x2028:
    case 0x2029:
    case 0x202F:
    case 0x205F:
    case 0x3000:
        return true;
    default:
        return unit >= 0x2000 && unit <= 0x200A;
    }
}

// [\w-] with Unicode properties: letters, numbers, the underscore and the
// hyphen.
bool isWordCharacter(char32_t c)
{
    if (c < 0x80)
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
               c == u'_' || c == u'-';
    switch (QChar::category(c)) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Number_Other:
        return true;
    default:
        return false;
    }
}

bool isAtRuleLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'-';
}

// Not ";", "{", "}" or a line feed: what a value is made of.
bool isValueUnit(char16_t unit)
{
    return unit != u';' && unit != u'{' && unit != u'}' && unit != u'\n';
}

// The text of one scan, with the ends of the runs it measured last: a long
// run of blanks or of word characters is met by many attempts in turn, and
// measuring it once keeps a scan linear.
class Scan
{
public:
    explicit Scan(QStringView text) : u(text.utf16()), n(text.size()) {}

    const char16_t *u;
    qsizetype n;

    // The code point at i and its length in units; a lone surrogate is one
    // unit that no class takes.
    std::pair<char32_t, qsizetype> codePoint(qsizetype i) const
    {
        const char16_t unit = u[i];
        if (QChar::isHighSurrogate(unit) && i + 1 < n && QChar::isLowSurrogate(u[i + 1]))
            return {QChar::surrogateToUcs4(unit, u[i + 1]), 2};
        return {unit, 1};
    }

    qsizetype nextCodePoint(qsizetype i) const { return i + codePoint(i).second; }

    // The first position at or after from that is not \s.
    qsizetype skipSpace(qsizetype from)
    {
        if (from >= m_spaceFrom && from <= m_spaceTo)
            return m_spaceTo;
        qsizetype at = from;
        while (at < n && isSpace(u[at]))
            ++at;
        m_spaceFrom = from;
        m_spaceTo = at;
        return at;
    }

    // The end of the run of [\w-] that starts at from.
    qsizetype skipWord(qsizetype from)
    {
        if (from >= m_wordFrom && from <= m_wordTo)
            return m_wordTo;
        qsizetype at = from;
        while (at < n) {
            const auto [c, length] = codePoint(at);
            if (!isWordCharacter(c))
                break;
            at += length;
        }
        m_wordFrom = from;
        m_wordTo = at;
        return at;
    }

    // The end of the run of value units that starts at from.
    qsizetype skipValue(qsizetype from)
    {
        if (from >= m_valueFrom && from <= m_valueTo)
            return m_valueTo;
        qsizetype at = from;
        while (at < n && isValueUnit(u[at]))
            ++at;
        m_valueFrom = from;
        m_valueTo = at;
        return at;
    }

    // The first ")" at or after from, or n.
    qsizetype nextClosingParenthesis(qsizetype from)
    {
        if (from >= m_parenthesisFrom && from <= m_parenthesisAt)
            return m_parenthesisAt;
        qsizetype at = from;
        while (at < n && u[at] != u')')
            ++at;
        m_parenthesisFrom = from;
        m_parenthesisAt = at;
        return at;
    }

    // The first index in [from, to) holding one of the units, or to.
    template<typename Predicate> qsizetype find(qsizetype from, qsizetype to, Predicate is) const
    {
        for (qsizetype at = from; at < to; ++at) {
            if (is(u[at]))
                return at;
        }
        return to;
    }

private:
    qsizetype m_spaceFrom = -1, m_spaceTo = -1;
    qsizetype m_wordFrom = -1, m_wordTo = -1;
    qsizetype m_valueFrom = -1, m_valueTo = -1;
    qsizetype m_parenthesisFrom = -1, m_parenthesisAt = -1;
};

// The match of a rule that starts at s, as the regular expression takes it
// when tried at s, or none. Each body follows the backtracking of its
// pattern to the one outcome that it can have.
std::optional<qsizetype> attempt(Rule rule, Scan &scan, const SpanList &closers, qsizetype s)
{
    const char16_t *u = scan.u;
    const qsizetype n = scan.n;
    switch (rule) {
    case Comment: {
        // (?s)/\*.*?\*/ : to the first "*/" that begins behind the opener.
        if (!(u[s] == u'/' && s + 1 < n && u[s + 1] == u'*'))
            return std::nullopt;
        const qsizetype close = closers.firstStartingFrom(s + 2);
        if (close == closers.size())
            return std::nullopt;
        return closers.at(close).end;
    }
    case AtRule: {
        // @[a-zA-Z-]+
        if (u[s] != u'@')
            return std::nullopt;
        qsizetype end = s + 1;
        while (end < n && isAtRuleLetter(u[end]))
            ++end;
        return end > s + 1 ? std::optional(end) : std::nullopt;
    }
    case Selector: {
        // ^[^{}/\n][^{/\n]*(?=\s*\{) : the greedy run stops before "{", "/" or
        // a line feed, and only its longest form can be followed by blanks and
        // a brace, since every shorter form is followed by a run character.
        if (!(s == 0 || u[s - 1] == u'\n'))
            return std::nullopt;
        const char16_t first = u[s];
        if (first == u'{' || first == u'}' || first == u'/' || first == u'\n')
            return std::nullopt;
        qsizetype end = scan.nextCodePoint(s);
        while (end < n && u[end] != u'{' && u[end] != u'/' && u[end] != u'\n')
            ++end;
        const qsizetype brace = scan.skipSpace(end);
        if (brace < n && u[brace] == u'{')
            return end;
        return std::nullopt;
    }
    case PropertyName: {
        // (?<=\{|;|\n)\s*([\w-]+)\s*(?=:) : blanks and word characters never
        // overlap, so no shorter form of a group can succeed where the longest
        // failed.
        if (s == 0 || !(u[s - 1] == u'{' || u[s - 1] == u';' || u[s - 1] == u'\n'))
            return std::nullopt;
        const qsizetype nameStart = scan.skipSpace(s);
        const qsizetype nameEnd = scan.skipWord(nameStart);
        if (nameEnd == nameStart)
            return std::nullopt;
        const qsizetype colon = scan.skipSpace(nameEnd);
        if (colon < n && u[colon] == u':')
            return colon;
        return std::nullopt;
    }
    case VariableReference: {
        // var\(--[\w-]+(?:,[^)]*)?\)
        if (n - s < 6 || QStringView(u + s, 6) != u"var(--")
            return std::nullopt;
        const qsizetype nameEnd = scan.skipWord(s + 6);
        if (nameEnd == s + 6 || nameEnd == n)
            return std::nullopt;
        if (u[nameEnd] == u')')
            return nameEnd + 1;
        if (u[nameEnd] != u',')
            return std::nullopt;
        const qsizetype close = scan.nextClosingParenthesis(nameEnd + 1);
        return close < n ? std::optional(close + 1) : std::nullopt;
    }
    case Value: {
        // (?<=:)\s*[^;{}\n]+(?=[;\n}]) : the blanks give back one at a time,
        // and a value may then be made of blanks alone, ending at a line feed
        // that the blanks had crossed.
        if (s == 0 || u[s - 1] != u':')
            return std::nullopt;
        const auto isEnd = [&](qsizetype at) {
            return at < n && (u[at] == u';' || u[at] == u'\n' || u[at] == u'}');
        };
        const qsizetype valueStart = scan.skipSpace(s);
        qsizetype lastLineFeed = valueStart - 1;
        while (lastLineFeed >= s && u[lastLineFeed] != u'\n')
            --lastLineFeed;
        if (valueStart < n && isValueUnit(u[valueStart])) {
            const qsizetype end = scan.skipValue(valueStart);
            if (isEnd(end))
                return end;
        } else if (valueStart - 1 > lastLineFeed && isEnd(valueStart)) {
            // Blanks behind the last line feed, then ";" or "}".
            return valueStart;
        }
        // Blanks ending at a line feed, the last such stretch first.
        for (qsizetype lineFeed = lastLineFeed; lineFeed > s; --lineFeed) {
            if (u[lineFeed] == u'\n' && u[lineFeed - 1] != u'\n')
                return lineFeed;
        }
        return std::nullopt;
    }
    case Punctuation: {
        const char16_t unit = u[s];
        if (unit == u'{' || unit == u'}' || unit == u':' || unit == u';')
            return s + 1;
        return std::nullopt;
    }
    }
    return std::nullopt;
}

// The first place in [from, to) where the rule could match, or to; every
// place it skips fails at once.
qsizetype nextCandidate(Rule rule, const Scan &scan, const SpanList &openers, qsizetype from,
                        qsizetype to)
{
    if (from >= to)
        return to;
    const char16_t *u = scan.u;
    const auto after = [&](auto is) {
        // Places right behind a unit: search from the unit before from.
        const qsizetype unit = scan.find(std::max<qsizetype>(from - 1, 0), to - 1, is);
        return unit < to - 1 ? std::max(unit + 1, from) : to;
    };
    switch (rule) {
    case Comment: {
        const qsizetype index = openers.firstStartingFrom(from);
        return index < openers.size() ? std::min(openers.at(index).start, to) : to;
    }
    case AtRule:
        return scan.find(from, to, [](char16_t unit) { return unit == u'@'; });
    case Selector:
        if (from == 0 || u[from - 1] == u'\n')
            return from;
        return after([](char16_t unit) { return unit == u'\n'; });
    case PropertyName:
        if (from > 0 && (u[from - 1] == u'{' || u[from - 1] == u';' || u[from - 1] == u'\n'))
            return from;
        return after([](char16_t unit) { return unit == u'{' || unit == u';' || unit == u'\n'; });
    case VariableReference: {
        const qsizetype end = std::min(scan.n, to + 5);
        const qsizetype found = QStringView(u + from, end - from).indexOf(u"var(--");
        return found < 0 ? to : std::min(from + found, to);
    }
    case Value:
        if (from > 0 && u[from - 1] == u':')
            return from;
        return after([](char16_t unit) { return unit == u':'; });
    case Punctuation:
        return scan.find(from, to, [](char16_t unit) {
            return unit == u'{' || unit == u'}' || unit == u':' || unit == u';';
        });
    }
    return to;
}

// The first position from which a rescan of the rule must start after an
// edit at at: every attempt that starts before it read only text before at.
// Only the text before at is looked at, which the edit left as it was.
qsizetype restartPoint(Rule rule, const Scan &scan, const SpanList &openers,
                       const SpanList &closers, qsizetype at)
{
    if (at == 0)
        return 0;
    const char16_t *u = scan.u;
    switch (rule) {
    case Comment: {
        // An opener reads up to the first closer behind it. Before the last
        // closer that ends before the edit, every opener found its closer
        // there or earlier; an opener just before that closer ("/*/") did not.
        const qsizetype closer = closers.firstStartingFrom(at - 1) - 1;
        const qsizetype bound =
            closer >= 0 ? std::max<qsizetype>(closers.at(closer).start - 1, 0) : 0;
        const qsizetype opener = openers.firstStartingFrom(bound);
        const qsizetype firstOpener = opener < openers.size() ? openers.at(opener).start : at - 1;
        return std::min(firstOpener, at - 1);
    }
    case AtRule: {
        qsizetype start = at;
        while (start > 0 && isAtRuleLetter(u[start - 1]))
            --start;
        return start > 0 && u[start - 1] == u'@' ? start - 1 : start;
    }
    case Selector: {
        // A line's attempt reads its run and the blanks behind it: only the
        // line of the last character before the edit that is not blank, and
        // the lines after it, can have read the edited text.
        qsizetype last = at - 1;
        while (last >= 0 && isSpace(u[last]))
            --last;
        if (last < 0)
            return 0;
        while (last > 0 && u[last - 1] != u'\n')
            --last;
        return last;
    }
    case PropertyName: {
        // Blanks, a word, blanks: the most an attempt reads before its colon.
        qsizetype start = at;
        while (start > 0 && isSpace(u[start - 1]))
            --start;
        while (start > 0) {
            qsizetype previous = start - 1;
            if (QChar::isLowSurrogate(u[previous]) && previous > 0 &&
                QChar::isHighSurrogate(u[previous - 1]))
                --previous;
            if (!isWordCharacter(scan.codePoint(previous).first))
                break;
            start = previous;
        }
        while (start > 0 && isSpace(u[start - 1]))
            --start;
        return start;
    }
    case VariableReference: {
        // Nothing but a closing parenthesis ends the fallback of a var().
        qsizetype start = at;
        while (start > 0 && u[start - 1] != u')')
            --start;
        return start;
    }
    case Value: {
        // Neither the blanks nor the value of an attempt cross ";", "{", "}".
        qsizetype start = at;
        while (start > 0 && u[start - 1] != u';' && u[start - 1] != u'{' && u[start - 1] != u'}')
            --start;
        return start;
    }
    case Punctuation:
        return at;
    }
    return at;
}

std::vector<Span> markers(const Scan &scan, char16_t first, char16_t second, qsizetype from,
                          qsizetype to)
{
    std::vector<Span> found;
    for (qsizetype at = std::max<qsizetype>(from, 0); at < to && at + 1 < scan.n; ++at) {
        if (scan.u[at] == first && scan.u[at + 1] == second)
            found.push_back({at, at + 2});
    }
    return found;
}

// Where the matches of the edited text fall in step with the old ones again:
// from a position p of the new text at or behind syncFrom whose old
// counterpart p - delta is no place inside an old match, the old scan went on
// from the same text as the new one does.
class Sync
{
public:
    Sync(const SpanList &old, qsizetype syncFrom, qsizetype delta, qsizetype newLength)
        : m_old(old), m_syncFrom(syncFrom), m_delta(delta), m_newLength(newLength)
    {}

    // The first such position at or after pos; the end of the text, where no
    // match starts in either text, always is one.
    qsizetype next(qsizetype pos) const
    {
        const qsizetype from = std::max(pos, m_syncFrom);
        if (from >= m_newLength)
            return m_newLength;
        const qsizetype old = from - m_delta;
        const qsizetype index = m_old.firstEndingAfter(old);
        if (index < m_old.size() && m_old.at(index).start < old)
            return m_old.at(index).end + m_delta;
        return from;
    }

private:
    const SpanList &m_old;
    qsizetype m_syncFrom;
    qsizetype m_delta;
    qsizetype m_newLength;
};

struct Rescan
{
    std::vector<Span> found;
    // Where the new matches join the old ones, in the new text.
    qsizetype syncedAt = 0;
};

Rescan scanFrom(Rule rule, Scan &scan, const SpanList &openers, const SpanList &closers,
                qsizetype from, const Sync *sync)
{
    Rescan result;
    qsizetype pos = from;
    while (true) {
        const qsizetype limit = sync ? sync->next(pos) : scan.n;
        if (pos >= limit) {
            result.syncedAt = limit;
            return result;
        }
        const qsizetype start = nextCandidate(rule, scan, openers, pos, limit);
        if (start >= limit) {
            pos = limit;
            continue;
        }
        if (const std::optional<qsizetype> end = attempt(rule, scan, closers, start)) {
            result.found.push_back({start, *end});
            pos = *end;
        } else {
            pos = scan.nextCodePoint(start);
        }
    }
}

} // namespace

void SyntaxScanner::reset(QStringView text)
{
    Scan scan(text);
    m_length = text.size();
    m_openers.reset(markers(scan, u'/', u'*', 0, m_length), m_length);
    m_closers.reset(markers(scan, u'*', u'/', 0, m_length), m_length);
    for (int rule = Comment; rule <= Punctuation; ++rule) {
        Rescan whole = scanFrom(Rule(rule), scan, m_openers, m_closers, 0, nullptr);
        m_matches[size_t(rule)].reset(std::move(whole.found), m_length);
    }
}

std::pair<qsizetype, qsizetype> SyntaxScanner::edit(QStringView text, qsizetype at,
                                                    qsizetype removed, qsizetype added)
{
    Scan scan(text);
    const qsizetype newLength = text.size();
    const qsizetype delta = added - removed;
    const qsizetype oldEditEnd = at + removed;

    // The markers around the edit: a pair that the edit touched or joined.
    for (SpanList *list : {&m_openers, &m_closers}) {
        const char16_t first = list == &m_openers ? u'/' : u'*';
        const char16_t second = list == &m_openers ? u'*' : u'/';
        const qsizetype begin = list->firstStartingFrom(at - 1);
        const qsizetype end = list->firstStartingFrom(oldEditEnd);
        list->replace(begin, end, markers(scan, first, second, at - 1, at + added), newLength);
    }

    // Old positions mapped into the new text; what the edit replaced
    // collapses to its start.
    const auto mapped = [&](qsizetype old) {
        return old < at ? old : old >= oldEditEnd ? old + delta : at;
    };
    qsizetype changedFrom = at;
    qsizetype changedTo = at + added;
    for (int rule = Comment; rule <= Punctuation; ++rule) {
        SpanList &old = m_matches[size_t(rule)];
        qsizetype restart = restartPoint(Rule(rule), scan, m_openers, m_closers, at);
        // From the start of an old match that holds it, the old scan went on.
        const qsizetype holding = old.firstEndingAfter(restart);
        if (holding < old.size() && old.at(holding).start < restart)
            restart = old.at(holding).start;

        const Sync sync(old, at + added + 1, delta, newLength);
        Rescan rescan = scanFrom(Rule(rule), scan, m_openers, m_closers, restart, &sync);
        const qsizetype first = old.firstStartingFrom(restart);
        const qsizetype last = old.firstStartingFrom(rescan.syncedAt - delta);

        // The span of the matches that differ, for the caller's repaint.
        qsizetype same = 0;
        const qsizetype oldCount = last - first;
        const qsizetype newCount = qsizetype(rescan.found.size());
        const auto equalAt = [&](qsizetype oldIndex, qsizetype newIndex) {
            const Span before = old.at(oldIndex);
            return Span{mapped(before.start), mapped(before.end)} == rescan.found[size_t(newIndex)];
        };
        while (same < oldCount && same < newCount && equalAt(first + same, same))
            ++same;
        qsizetype sameTail = 0;
        while (sameTail < oldCount - same && sameTail < newCount - same &&
               equalAt(last - 1 - sameTail, newCount - 1 - sameTail))
            ++sameTail;
        for (qsizetype i = first + same; i < last - sameTail; ++i) {
            changedFrom = std::min(changedFrom, mapped(old.at(i).start));
            changedTo = std::max(changedTo, mapped(old.at(i).end));
        }
        for (qsizetype i = same; i < newCount - sameTail; ++i) {
            changedFrom = std::min(changedFrom, rescan.found[size_t(i)].start);
            changedTo = std::max(changedTo, rescan.found[size_t(i)].end);
        }
        old.replace(first, last, rescan.found, newLength);
    }
    m_length = newLength;
    return {changedFrom, changedTo};
}

QList<SyntaxRun> SyntaxScanner::runs(qsizetype from, qsizetype to) const
{
    from = std::clamp<qsizetype>(from, 0, m_length);
    to = std::clamp<qsizetype>(to, from, m_length);
    std::vector<SyntaxRole> roles(size_t(to - from), SyntaxRole::None);
    for (int rule = Comment; rule <= Punctuation; ++rule) {
        const SpanList &matches = m_matches[size_t(rule)];
        for (qsizetype i = matches.firstEndingAfter(from); i < matches.size(); ++i) {
            const Span span = matches.at(i);
            if (span.start >= to)
                break;
            std::fill(roles.begin() + (std::max(span.start, from) - from),
                      roles.begin() + (std::min(span.end, to) - from), SyntaxRole(rule + 1));
        }
    }
    QList<SyntaxRun> result;
    for (qsizetype i = 0; i < qsizetype(roles.size());) {
        qsizetype end = i + 1;
        while (end < qsizetype(roles.size()) && roles[size_t(end)] == roles[size_t(i)])
            ++end;
        if (roles[size_t(i)] != SyntaxRole::None)
            result.append({from + i, end - i, roles[size_t(i)]});
        i = end;
    }
    return result;
}

} // namespace Ombrel
