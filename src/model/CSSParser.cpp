#include "CSSParser.h"

#include "TextScan.h"

#include <QStringBuilder>

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

bool isStructural(char16_t unit)
{
    return unit == u'{' || unit == u'}' || unit == u';';
}

} // namespace

QPointF positionForIndex(qsizetype index)
{
    return QPointF(140.0, 40.0 + double(index) * 210.0);
}

QString removeComments(const QString &text)
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

CSSPropertyList parseProperties(QStringView body)
{
    CSSPropertyList properties;
    qsizetype pieceStart = 0;
    const qsizetype size = body.size();
    const CharacterWalk walk(body);
    while (pieceStart <= size) {
        qsizetype pieceEnd = walk.indexOfStandalone(u';', pieceStart);
        if (pieceEnd < 0)
            pieceEnd = size;
        const QStringView piece =
            TextScan::trimmedWhitespaceAndNewlines(body.sliced(pieceStart, pieceEnd - pieceStart));
        pieceStart = pieceEnd + 1;
        if (piece.isEmpty())
            continue;
        const qsizetype colon = CharacterWalk(piece).indexOfStandalone(u':');
        if (colon < 0)
            continue;
        const QStringView name = TextScan::trimmedWhitespace(piece.first(colon));
        const QStringView value = TextScan::trimmedWhitespace(piece.sliced(colon + 1));
        if (name.isEmpty() || value.isEmpty())
            continue;
        properties.append(CSSProperty(name.toString(), value.toString()));
    }
    return properties;
}

CSSRulesetList parse(const QString &css)
{
    const QString text = removeComments(css);
    const QStringView source(text);
    const qsizetype size = source.size();
    const CharacterWalk walk(source);

    CSSRulesetList rulesets;
    // Deliberately unclamped: a stray "}" takes it below zero, and from then
    // on nothing opens a ruleset until a surplus "{" brings it back.
    qint64 depth = 0;
    bool inAtRule = false;
    qint64 atDepth = 0;
    QString selector;
    Collected buffer(source);
    Collected body(source);

    // Ordinary characters between two structural ones all go the same way, so
    // they are handed over as one run.
    qsizetype runStart = 0;
    auto flushRun = [&](qsizetype runEnd) {
        if (inAtRule)
            return;
        if (depth != 0)
            body.append(runStart, runEnd);
        else
            buffer.append(runStart, runEnd);
    };

    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = source[i].unicode();
        if (!isStructural(unit) || !walk.standsAlone(i))
            continue;
        flushRun(i);
        runStart = i + 1;

        if (unit == u'{') {
            ++depth;
            if (inAtRule) {
                ++atDepth;
            } else if (depth == 1) {
                const QStringView head = TextScan::trimmedWhitespaceAndNewlines(buffer.view());
                if (!head.isEmpty() && head.front() == u'@' && CharacterWalk(head).standsAlone(0)) {
                    inAtRule = true;
                    atDepth = 1;
                    selector.clear();
                } else {
                    selector = head.toString();
                }
                buffer.clear();
                body.clear();
            } else {
                body.append(i, i + 1);
            }
        } else if (unit == u'}') {
            if (inAtRule) {
                if (--atDepth == 0)
                    inAtRule = false;
                --depth;
            } else if (depth == 1) {
                if (!selector.isEmpty()) {
                    rulesets.append(std::make_shared<CSSRuleset>(
                        selector, parseProperties(body.view()), positionForIndex(rulesets.size())));
                }
                selector.clear();
                buffer.clear();
                body.clear();
                --depth;
            } else {
                --depth;
                if (depth >= 1)
                    body.append(i, i + 1);
            }
        } else if (!inAtRule) {
            if (depth != 0)
                body.append(i, i + 1);
            else
                buffer.clear();
        }
    }
    return rulesets;
}

} // namespace Ombrel::CSSParser
