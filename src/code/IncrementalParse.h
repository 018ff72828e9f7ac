#pragma once

#include "RulesetMerge.h"

#include <QList>
#include <QString>

#include <vector>

namespace Ombrel {

// The parse of the code tab's text, kept in pieces so that an edit parses
// again only the pieces it touched. rulesets() always equals what
// CSSParser::parse gives for the whole text (ids aside).
//
// The text is cut where the parser is back in its opening state: outside
// comments and blocks, with no selector gathered. Such a place is found by
// the parser itself: a piece is parsed with a small sentinel ruleset behind
// it, and only when the sentinel comes out whole did the piece end there.
// The places tried are right behind a "}" followed by a character that
// cannot join it, so that both sides split into the same characters alone
// as within the whole text.
class IncrementalParse
{
public:
    // A piece is cut once it has grown to about pieceSize units: smaller
    // pieces make a longer first parse and a shorter one per edit.
    explicit IncrementalParse(qsizetype pieceSize = 512) : m_pieceSize(pieceSize) {}

    void reset(const QString &text);

    // text is the whole text after an edit that replaced removed units at at
    // with added units.
    void edit(const QString &text, qsizetype at, qsizetype removed, qsizetype added);

    const QList<ParsedRuleset> &rulesets() const { return m_rulesets; }
    // How many pieces the text is cut into.
    qsizetype pieceCount() const { return qsizetype(m_pieces.size()); }

private:
    struct Piece
    {
        qsizetype length = 0;
        qsizetype rulesetCount = 0;
    };

    // Parses text[from, to) into pieces appended to pieces and rulesets.
    // With toIsEnd, to is the end of the text; otherwise the last piece
    // must end cleanly at to. With wholeFirst the range is first tried as one
    // piece. Returns where the text could not be cut cleanly (to when all of
    // it was), so that the caller can widen.
    qsizetype parseRange(const QString &text, qsizetype from, qsizetype to, bool toIsEnd,
                         bool wholeFirst, std::vector<Piece> &pieces,
                         QList<ParsedRuleset> &rulesets) const;

    qsizetype m_pieceSize;
    std::vector<Piece> m_pieces;
    QList<ParsedRuleset> m_rulesets;
};

} // namespace Ombrel
