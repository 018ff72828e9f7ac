#pragma once

#include "SpanList.h"
#include "SyntaxColouring.h"

#include <QList>
#include <QStringView>

#include <array>
#include <utility>

namespace Ombrel {

// The matches of the seven colouring rules over a text, kept so that an
// edit rescans only the neighbourhood it can influence. Each rule is matched
// by a hand-written scanner that takes the same matches as its regular
// expression (SyntaxColouring::pattern) in linear time; after an edit a rule
// rescans from the first place whose matching could have read the edited text
// until its matches fall in step with those of the text before the edit.
// roles() then equals SyntaxColouring::roleRuns() of the edited text.
class SyntaxScanner
{
public:
    // Scans the whole text.
    void reset(QStringView text);

    // The text after an edit that replaced removed units at position at with
    // added units. Returns the range of the new text outside which no role
    // changed (empty when nothing changed at all).
    std::pair<qsizetype, qsizetype> edit(QStringView text, qsizetype at, qsizetype removed,
                                         qsizetype added);

    qsizetype length() const { return m_length; }

    // The roles within [from, to) as runs in offsets of the text, cut at the
    // range's ends.
    QList<SyntaxRun> runs(qsizetype from, qsizetype to) const;
    QList<SyntaxRun> runs() const { return runs(0, m_length); }

private:
    // One list of matches per rule, in the order of SyntaxRole after None.
    std::array<SpanList, 7> m_matches;
    // Every "/*" and "*/" of the text, matched or not, as two-unit spans:
    // where comments may open and close.
    SpanList m_openers;
    SpanList m_closers;
    qsizetype m_length = 0;
};

} // namespace Ombrel
