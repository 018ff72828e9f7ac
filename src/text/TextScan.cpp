#include "TextScan.h"

#include <QChar>
#include <QTextBoundaryFinder>

namespace Ombrel::TextScan {

bool isNonAsciiWhitespace(char16_t unit)
{
    return QChar::category(char32_t(unit)) == QChar::Separator_Space;
}

bool isNonAsciiWhitespaceOrNewline(char16_t unit)
{
    if (unit == 0x85)
        return true;
    switch (QChar::category(char32_t(unit))) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

template<typename Predicate> static QStringView trimmedBy(QStringView text, Predicate inSet)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && inSet(text[begin].unicode()))
        ++begin;
    while (end > begin && inSet(text[end - 1].unicode()))
        --end;
    return text.sliced(begin, end - begin);
}

QStringView trimmedWhitespace(QStringView text)
{
    return trimmedBy(text, [](char16_t unit) { return isWhitespace(unit); });
}

QStringView trimmedWhitespaceAndNewlines(QStringView text)
{
    return trimmedBy(text, [](char16_t unit) { return isWhitespaceOrNewline(unit); });
}

CharacterWalk::CharacterWalk(QStringView text) : m_text(text) {}

CharacterWalk::~CharacterWalk() = default;

bool CharacterWalk::standsAloneBySegmenting(qsizetype index) const
{
    if (!m_finder) {
        m_copy = m_text.toString();
        m_finder = std::make_unique<QTextBoundaryFinder>(QTextBoundaryFinder::Grapheme, m_copy);
    }
    m_finder->setPosition(index);
    if (!m_finder->isAtBoundary())
        return false;
    m_finder->setPosition(index + 1);
    return m_finder->isAtBoundary();
}

qsizetype CharacterWalk::indexOfStandalone(char16_t c, qsizetype from) const
{
    for (qsizetype at = m_text.indexOf(QChar(c), from); at >= 0;
         at = m_text.indexOf(QChar(c), at + 1)) {
        if (standsAlone(at))
            return at;
    }
    return -1;
}

qsizetype closingParenthesis(QStringView text, qsizetype from)
{
    // Segmentation reads left to right, so a walk over the first units from
    // the opening parenthesis on answers as a longer one would for all but the
    // last two of them: the walk widens only as far as the closing parenthesis
    // lies, and a caller that asks again and again of a long text pays for
    // the span it asks about, not for the whole text each time.
    const qsizetype begin = qMax<qsizetype>(0, from - 1);
    int depth = 1;
    qsizetype at = from;
    for (qsizetype span = 256;; span *= 2) {
        const bool whole = begin + span >= text.size();
        const QStringView window = whole ? text.sliced(begin) : text.sliced(begin, span);
        const CharacterWalk walk(window);
        const qsizetype settled = whole ? text.size() : begin + span - 2;
        for (; at < settled; ++at) {
            const char16_t unit = text[at].unicode();
            if (unit != u'(' && unit != u')')
                continue;
            if (!walk.standsAlone(at - begin))
                continue;
            depth += unit == u'(' ? 1 : -1;
            if (depth == 0)
                return at;
        }
        if (whole)
            return -1;
    }
}

qsizetype lastCharacterStart(QStringView text)
{
    const qsizetype size = text.size();
    if (size == 0)
        return 0;
    const char16_t last = text[size - 1].unicode();
    // Line breaks never join what stands before them, except "\r\n" itself.
    if (last == u'\n')
        return size >= 2 && text[size - 2] == u'\r' ? size - 2 : size - 1;
    if (last == u'\r')
        return size - 1;
    if (last < firstExtendingUnit && (size == 1 || text[size - 2].unicode() < firstPrependingUnit))
        return size - 1;

    const QString copy = text.toString();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, copy);
    finder.toEnd();
    const qsizetype start = finder.toPreviousBoundary();
    return start < 0 ? 0 : start;
}

qsizetype nextCharacterEnd(QStringView text, qsizetype from)
{
    const qsizetype size = text.size();
    if (from + 1 >= size)
        return size;
    const char16_t unit = text[from].unicode();
    const char16_t next = text[from + 1].unicode();
    if (unit == u'\r')
        return next == u'\n' ? from + 2 : from + 1;
    if (unit < firstPrependingUnit && next < firstExtendingUnit)
        return from + 1;

    const QString copy = text.toString();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, copy);
    finder.setPosition(from);
    const qsizetype end = finder.toNextBoundary();
    return end < 0 ? size : end;
}

} // namespace Ombrel::TextScan
