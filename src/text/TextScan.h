#pragma once

#include <QString>
#include <QStringView>

#include <memory>

class QTextBoundaryFinder;

// Character-level helpers shared by the parser and every reader of typed text.
namespace Ombrel::TextScan {

// No code point below U+0300 extends the character before it, and none below
// U+0600 is a prepended mark: text made of such units needs no segmentation.
constexpr char16_t firstExtendingUnit = 0x0300;
constexpr char16_t firstPrependingUnit = 0x0600;

bool isNonAsciiWhitespace(char16_t unit);
bool isNonAsciiWhitespaceOrNewline(char16_t unit);

// Space separators (category Zs) and the horizontal tab: what typed text and
// declaration names and values are trimmed of. Line breaks are not in it.
inline bool isWhitespace(char16_t unit)
{
    if (unit < 0x80)
        return unit == u' ' || unit == u'\t';
    return isNonAsciiWhitespace(unit);
}

// All separators (category Z), tab, U+000A..U+000D and U+0085.
inline bool isWhitespaceOrNewline(char16_t unit)
{
    if (unit < 0x80)
        return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
    return isNonAsciiWhitespaceOrNewline(unit);
}

QStringView trimmedWhitespace(QStringView text);
QStringView trimmedWhitespaceAndNewlines(QStringView text);

// Answers whether a code unit of a text is a whole user-perceived character
// (an extended grapheme cluster) on its own. Text where nothing can join is
// answered from the neighbouring units; the text is segmented only when a
// unit's neighbours could attach to it.
class CharacterWalk
{
public:
    explicit CharacterWalk(QStringView text);
    ~CharacterWalk();
    CharacterWalk(const CharacterWalk &) = delete;
    CharacterWalk &operator=(const CharacterWalk &) = delete;

    // Inline for the common case of neighbours that cannot join: the parser
    // asks this of every brace, and a braces-only text asks it a million times.
    bool standsAlone(qsizetype index) const
    {
        const char16_t next = index + 1 < m_text.size() ? m_text[index + 1].unicode() : 0;
        const char16_t previous = index > 0 ? m_text[index - 1].unicode() : 0;
        if (next >= firstExtendingUnit || previous >= firstPrependingUnit)
            return standsAloneBySegmenting(index);
        const char16_t unit = m_text[index].unicode();
        return !(unit == u'\r' && next == u'\n') && !(unit == u'\n' && previous == u'\r');
    }

    // Index of the first occurrence at or after from of the ASCII character c
    // as a character of its own, or -1.
    qsizetype indexOfStandalone(char16_t c, qsizetype from = 0) const;

private:
    bool standsAloneBySegmenting(qsizetype index) const;

    QStringView m_text;
    mutable QString m_copy;
    mutable std::unique_ptr<QTextBoundaryFinder> m_finder;
};

// The index of the ")" that closes the "(" just before from, counting every
// parenthesis that is a character of its own and ignoring quotes; -1 when the
// text ends first.
qsizetype closingParenthesis(QStringView text, qsizetype from);

// Index of the first code unit of the last user-perceived character of text
// (0 for an empty text).
qsizetype lastCharacterStart(QStringView text);

// Index just behind the user-perceived character that starts at from.
qsizetype nextCharacterEnd(QStringView text, qsizetype from);

} // namespace Ombrel::TextScan
