#include "CSSParser.h"

#include "text/TextScan.h"

#include <QHash>
#include <QStringBuilder>
#include <QVarLengthArray>

namespace Ombrel::CSSParser {

using TextScan::CharacterWalk;

namespace {

// Text collected from the source while parsing. Almost always one contiguous
// run of the source, so it is kept as a range and copied only when pieces that
// are not adjacent have to be joined.
class Collected
{
public:
    explicit Collected(QStringView source) : m_source(source) {}

    void append(qsizetype from, qsizetype to)
    {
        if (from == to)
            return;
        if (m_joined) {
            m_text += m_source.sliced(from, to - from);
        } else if (m_begin == m_end) {
            m_begin = from;
            m_end = to;
        } else if (from == m_end) {
            m_end = to;
        } else {
            m_text = m_source.sliced(m_begin, m_end - m_begin) % m_source.sliced(from, to - from);
            m_joined = true;
        }
    }

    void clear()
    {
        m_begin = m_end = 0;
        m_joined = false;
        m_text.clear();
    }

    QStringView view() const
    {
        return m_joined ? QStringView(m_text) : m_source.sliced(m_begin, m_end - m_begin);
    }

private:
    QStringView m_source;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    bool m_joined = false;
    QString m_text;
};

// The strings of one parse. A stylesheet repeats its property names, and many
// of its values, hundreds of times: each distinct text is allocated once and
// the repetitions share it, which saves a large part of the memory a parsed
// folder takes and of the time spent taking it. Sharing is invisible to the
// model, since a QString detaches before any change.
class TextPool
{
public:
    // Sized for a text of that many code units, so that the table seldom
    // grows while the text is parsed.
    explicit TextPool(qsizetype textSize) { m_strings.reserve(textSize / unitsPerDistinctText); }

    QString get(QStringView text)
    {
        // The key views the text being parsed, which outlives the pool.
        auto it = m_strings.find(text);
        if (it == m_strings.end())
            it = m_strings.emplace(text, text.toString());
        return it.value();
    }

private:
    // About one distinct name or value for every 64 units of a stylesheet.
    static constexpr qsizetype unitsPerDistinctText = 64;

    QHash<QStringView, QString> m_strings;
};

// Whether the ASCII unit at i, neither CR nor LF, has neighbours that cannot
// join it, so that it is a character of its own without segmenting the text.
inline bool hasPlainNeighbours(const char16_t *units, qsizetype size, qsizetype i)
{
    return (i + 1 == size || units[i + 1] < TextScan::firstExtendingUnit) &&
           (i == 0 || units[i - 1] < TextScan::firstPrependingUnit);
}

// From a brace that left depth non-zero, the index of the brace that brings it
// back to zero, or the size of the text if none does. Between the two only
// braces count: a body is cut into declarations afterwards, and whatever
// stands inside an at-rule block or below depth zero is never read.
qsizetype findBalancingBrace(QStringView text, const CharacterWalk &walk, qsizetype from,
                             qint64 depth)
{
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    for (qsizetype i = from; i < size; ++i) {
        const char16_t unit = units[i];
        if (unit != u'{' && unit != u'}')
            continue;
        if (!hasPlainNeighbours(units, size, i) && !walk.standsAlone(i))
            continue;
        depth += unit == u'{' ? 1 : -1;
        if (depth == 0)
            return i;
    }
    return size;
}

// The index of the first "{", "}" or ";" standing alone at or after from, or
// the size of the text.
qsizetype findStructural(QStringView text, const CharacterWalk &walk, qsizetype from)
{
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    for (qsizetype i = from; i < size; ++i) {
        const char16_t unit = units[i];
        if (unit != u'{' && unit != u'}' && unit != u';')
            continue;
        if (hasPlainNeighbours(units, size, i) || walk.standsAlone(i))
            return i;
    }
    return size;
}

} // namespace

QPointF positionForIndex(qsizetype index)
{
    return QPointF(140.0, 40.0 + double(index) * 210.0);
}

namespace {

// Counts the comments it removes when given somewhere to count them.
QString removeComments(const QString &text, qsizetype *comments)
{
    const QStringView source(text);
    const qsizetype size = source.size();
    const CharacterWalk walk(source);
    auto isPair = [&](qsizetype at, char16_t first, char16_t second) {
        return source[at] == first && source[at + 1] == second && walk.standsAlone(at) &&
               walk.standsAlone(at + 1);
    };

    // Searching for the first character alone is much faster than for the
    // pair, and a lone "/" is rare in stylesheets.
    auto find = [&](char16_t first, char16_t second, qsizetype from) {
        for (qsizetype at = source.indexOf(QChar(first), from); at >= 0 && at + 1 < size;
             at = source.indexOf(QChar(first), at + 1)) {
            if (isPair(at, first, second))
                return at;
        }
        return qsizetype(-1);
    };

    QString out;
    qsizetype copyFrom = 0;
    qsizetype searchFrom = 0;
    while (true) {
        const qsizetype open = find(u'/', u'*', searchFrom);
        if (open < 0)
            break;
        if (out.isNull())
            out.reserve(size);
        out += source.sliced(copyFrom, open - copyFrom);
        if (comments)
            ++*comments;

        const qsizetype close = find(u'*', u'/', open + 2);
        if (close < 0) {
            // The scan for the closing pair stops one character short of the
            // end, and that last character is then copied like any other.
            const qsizetype tail = open + 2;
            if (tail < size)
                out += source.sliced(tail + TextScan::lastCharacterStart(source.sliced(tail)));
            return out;
        }
        copyFrom = searchFrom = close + 2;
    }
    if (out.isNull())
        return text;
    out += source.sliced(copyFrom);
    return out;
}

} // namespace

QString removeComments(const QString &text)
{
    return removeComments(text, nullptr);
}

namespace {

CSSPropertyList parseProperties(QStringView body, TextPool &pool)
{
    struct Declaration
    {
        QStringView name;
        QStringView value;
    };
    // Gathered first so that the list is allocated once at its final size.
    QVarLengthArray<Declaration, 32> declarations;

    const CharacterWalk walk(body);
    const char16_t *units = body.utf16();
    const qsizetype size = body.size();
    qsizetype pieceStart = 0;
    // The first ":" unit of the piece, and whether its neighbours are plain
    // enough that it stands alone whatever text around it is segmented.
    qsizetype colon = -1;
    bool colonIsPlain = false;
    for (qsizetype i = 0; i <= size; ++i) {
        if (i < size) {
            const char16_t unit = units[i];
            if (unit == u':') {
                if (colon < 0) {
                    colon = i;
                    colonIsPlain = hasPlainNeighbours(units, size, i);
                }
                continue;
            }
            if (unit != u';' || (!hasPlainNeighbours(units, size, i) && !walk.standsAlone(i)))
                continue;
        }
        const QStringView piece =
            TextScan::trimmedWhitespaceAndNewlines(body.sliced(pieceStart, i - pieceStart));
        // A colon is never white space, so the first one of the piece is also
        // the first one of the trimmed piece. One beside units that might join
        // it is decided by segmenting the trimmed piece alone, as a reader of
        // that piece would.
        const qsizetype pieceBegin = piece.data() - body.data();
        if (colon >= 0 && !colonIsPlain) {
            const qsizetype found =
                CharacterWalk(piece).indexOfStandalone(u':', colon - pieceBegin);
            colon = found < 0 ? -1 : pieceBegin + found;
        }
        if (colon >= 0) {
            const QStringView name =
                TextScan::trimmedWhitespace(body.sliced(pieceBegin, colon - pieceBegin));
            const QStringView value = TextScan::trimmedWhitespace(
                body.sliced(colon + 1, pieceBegin + piece.size() - colon - 1));
            if (!name.isEmpty() && !value.isEmpty())
                declarations.append({name, value});
        }
        pieceStart = i + 1;
        colon = -1;
    }

    CSSPropertyList properties;
    properties.reserve(declarations.size());
    for (const Declaration &declaration : declarations)
        properties.emplaceBack(pool.get(declaration.name), pool.get(declaration.value));
    return properties;
}

} // namespace

CSSPropertyList parseProperties(QStringView body)
{
    TextPool pool(body.size());
    return parseProperties(body, pool);
}

namespace {

// Whether a head gathered at depth 0 opens an at-rule.
bool isAtRuleHead(QStringView head)
{
    return !head.isEmpty() && head.front() == u'@' && CharacterWalk(head).standsAlone(0);
}

// Counting is asked for by passing dropped; without it the parse does no more
// than it must.
CSSRulesetList parse(const QString &css, DroppedCounts *dropped)
{
    const QString text = removeComments(css, dropped ? &dropped->comments : nullptr);
    const QStringView source(text);
    const qsizetype size = source.size();
    const CharacterWalk walk(source);

    CSSRulesetList rulesets;
    TextPool pool(size);
    // The coming selector: text at depth 0 since the last ";" or block.
    Collected buffer(source);
    qsizetype from = 0;
    while (from < size) {
        const qsizetype at = findStructural(source, walk, from);
        buffer.append(from, at);
        if (at == size) {
            // An at-statement left without its ";" at the end goes too.
            if (dropped && isAtRuleHead(TextScan::trimmedWhitespaceAndNewlines(buffer.view())))
                ++dropped->atRules;
            break;
        }
        const char16_t unit = source[at].unicode();
        if (unit == u';') {
            // That is how "@import ...;" and "@charset ...;" vanish.
            if (dropped && isAtRuleHead(TextScan::trimmedWhitespaceAndNewlines(buffer.view())))
                ++dropped->atRules;
            buffer.clear();
            from = at + 1;
        } else if (unit == u'}') {
            // Deliberately unclamped: a stray "}" takes the depth below zero,
            // and nothing opens a ruleset until a surplus "{" brings it back.
            // The selector gathered so far waits for that.
            from = findBalancingBrace(source, walk, at + 1, -1) + 1;
        } else {
            // An at-rule's block, inner rulesets included, is dropped whole;
            // so is a block that is never closed, and one with an empty head.
            const QStringView head = TextScan::trimmedWhitespaceAndNewlines(buffer.view());
            const bool atRule = isAtRuleHead(head);
            if (atRule && dropped)
                ++dropped->atRules;
            const qsizetype close = findBalancingBrace(source, walk, at + 1, 1);
            if (close < size && !atRule && !head.isEmpty()) {
                rulesets.append(std::make_shared<CSSRuleset>(
                    head.toString(), parseProperties(source.sliced(at + 1, close - at - 1), pool),
                    positionForIndex(rulesets.size())));
            }
            buffer.clear();
            from = close + 1;
        }
    }
    return rulesets;
}

} // namespace

CSSRulesetList parse(const QString &css)
{
    return parse(css, nullptr);
}

CSSRulesetList parse(const QString &css, DroppedCounts &dropped)
{
    dropped = {};
    return parse(css, &dropped);
}

} // namespace Ombrel::CSSParser
