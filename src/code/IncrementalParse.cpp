#include "IncrementalParse.h"

#include "model/CSSParser.h"
#include "text/TextScan.h"

#include <optional>

namespace Ombrel {

namespace {

// Control characters that are neither blank nor joined to anything: the
// selector of the sentinel ruleset, one the piece does not contain, so that
// a ruleset with exactly that selector can only come from the sentinel.
std::optional<QChar> sentinelSelector(QStringView piece)
{
    for (char16_t c = 1; c < 0x20; ++c) {
        if (c >= u'\t' && c <= u'\r')
            continue;
        if (!piece.contains(QChar(c)))
            return QChar(c);
    }
    return std::nullopt;
}

QList<ParsedRuleset> recordsOf(const CSSRulesetList &rulesets, qsizetype count)
{
    QList<ParsedRuleset> records;
    records.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        records.append({rulesets[i]->selector(), rulesets[i]->properties()});
    return records;
}

// The rulesets of a piece if the parser ends it in its opening state, as
// the whole text's parse has them; none otherwise.
std::optional<QList<ParsedRuleset>> parseClosedPiece(QStringView piece)
{
    const std::optional<QChar> selector = sentinelSelector(piece);
    if (!selector)
        return std::nullopt;
    QString probe;
    probe.reserve(piece.size() + 4);
    probe += piece;
    probe += QLatin1Char('\n');
    probe += *selector;
    probe += QLatin1String("{}");
    const CSSRulesetList parsed = CSSParser::parse(probe);
    if (parsed.isEmpty() || parsed.last()->selector() != QString(*selector) ||
        !parsed.last()->properties().isEmpty())
        return std::nullopt;
    return recordsOf(parsed, parsed.size() - 1);
}

// In piece sizes: a piece this long was never cut.
constexpr qsizetype largePiece = 16;

// Right behind a "}" that nothing behind it can join.
bool isCutPlace(QStringView text, qsizetype at)
{
    return at > 0 && at < text.size() && text[at - 1] == u'}' &&
           text[at].unicode() < TextScan::firstExtendingUnit;
}

} // namespace

qsizetype IncrementalParse::parseRange(const QString &text, qsizetype from, qsizetype to,
                                       bool toIsEnd, bool wholeFirst, std::vector<Piece> &pieces,
                                       QList<ParsedRuleset> &rulesets) const
{
    const QStringView view(text);
    if (wholeFirst && from < to) {
        std::optional<QList<ParsedRuleset>> whole;
        if (toIsEnd) {
            const CSSRulesetList parsed = CSSParser::parse(text.sliced(from, to - from));
            whole = recordsOf(parsed, parsed.size());
        } else {
            whole = parseClosedPiece(view.sliced(from, to - from));
        }
        if (whole) {
            pieces.push_back({to - from, whole->size()});
            rulesets += *whole;
            return to;
        }
    }
    qsizetype start = from;
    // After a place that did not close, the next try waits until the piece
    // has doubled, so that a text that never closes is parsed a bounded
    // number of times over.
    qsizetype nextTry = from + m_pieceSize;
    for (qsizetype at = view.indexOf(u'}', from); at >= 0 && at + 1 < to;
         at = view.indexOf(u'}', at + 1)) {
        const qsizetype cut = at + 1;
        if (cut < nextTry || !isCutPlace(view, cut))
            continue;
        if (std::optional<QList<ParsedRuleset>> closed =
                parseClosedPiece(view.sliced(start, cut - start))) {
            pieces.push_back({cut - start, closed->size()});
            rulesets += *closed;
            start = cut;
            nextTry = cut + m_pieceSize;
        } else {
            nextTry = cut + (cut - start);
        }
    }
    if (start == to)
        return to;
    if (toIsEnd) {
        const CSSRulesetList parsed = CSSParser::parse(text.sliced(start, to - start));
        const QList<ParsedRuleset> last = recordsOf(parsed, parsed.size());
        pieces.push_back({to - start, last.size()});
        rulesets += last;
        return to;
    }
    if (std::optional<QList<ParsedRuleset>> closed =
            parseClosedPiece(view.sliced(start, to - start))) {
        pieces.push_back({to - start, closed->size()});
        rulesets += *closed;
        return to;
    }
    return start;
}

void IncrementalParse::reset(const QString &text)
{
    m_pieces.clear();
    m_rulesets.clear();
    if (!text.isEmpty())
        parseRange(text, 0, text.size(), true, false, m_pieces, m_rulesets);
}

void IncrementalParse::edit(const QString &text, qsizetype at, qsizetype removed, qsizetype added)
{
    const qsizetype delta = added - removed;
    const qsizetype oldEditEnd = at + removed;
    if (m_pieces.empty()) {
        reset(text);
        return;
    }

    // The first piece to parse again holds the unit before the edit, since a
    // cut right at the edit depends on the unit behind it; the last holds
    // the unit right behind the edit.
    size_t first = 0;
    qsizetype firstStart = 0;
    qsizetype rulesetsBefore = 0;
    while (first + 1 < m_pieces.size() && firstStart + m_pieces[first].length <= at - 1) {
        firstStart += m_pieces[first].length;
        rulesetsBefore += m_pieces[first].rulesetCount;
        ++first;
    }
    size_t last = first;
    qsizetype lastEnd = firstStart + m_pieces[first].length;
    qsizetype rulesetsReplaced = m_pieces[first].rulesetCount;
    while (last + 1 < m_pieces.size() && lastEnd <= oldEditEnd) {
        ++last;
        lastEnd += m_pieces[last].length;
        rulesetsReplaced += m_pieces[last].rulesetCount;
    }

    std::vector<Piece> pieces;
    QList<ParsedRuleset> rulesets;
    qsizetype start = firstStart;
    // A large piece held no place to cut before the edit, most likely an
    // at-rule's block: whole again in one parse, rather than after tries at
    // every brace inside it.
    bool wholeFirst = first == last && m_pieces[first].length >= largePiece * m_pieceSize;
    while (true) {
        const bool toEnd = last + 1 == m_pieces.size();
        start = parseRange(text, start, lastEnd + delta, toEnd, wholeFirst, pieces, rulesets);
        wholeFirst = false;
        if (start == lastEnd + delta)
            break;
        // The old cut no longer closes: take in at least as much again of
        // the pieces behind, so that a text that stays open to its end is
        // parsed a bounded number of times over.
        const qsizetype wanted = 2 * (lastEnd + delta - start);
        do {
            ++last;
            lastEnd += m_pieces[last].length;
            rulesetsReplaced += m_pieces[last].rulesetCount;
        } while (last + 1 < m_pieces.size() && lastEnd + delta - start < wanted);
    }

    m_pieces.erase(m_pieces.begin() + qsizetype(first), m_pieces.begin() + qsizetype(last) + 1);
    m_pieces.insert(m_pieces.begin() + qsizetype(first), pieces.begin(), pieces.end());
    m_rulesets.remove(rulesetsBefore, rulesetsReplaced);
    m_rulesets.insert(rulesetsBefore, rulesets.size(), ParsedRuleset());
    std::move(rulesets.begin(), rulesets.end(), m_rulesets.begin() + rulesetsBefore);
}

} // namespace Ombrel
