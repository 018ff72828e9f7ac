#pragma once

#include <QtGlobal>

#include <vector>

namespace Ombrel {

// A range [start, end) of a text, in UTF-16 offsets.
struct Span
{
    qsizetype start = 0;
    qsizetype end = 0;

    friend bool operator==(const Span &, const Span &) = default;
};

// Ordered, non-overlapping spans of a text that is edited again and again at
// one place. The spans sit in a gap buffer whose gap follows the edits, and
// those behind the gap are kept as distances from the end of the text: an
// edit moves only the spans between its place and the one before, and the
// spans behind it need no shifting, however many there are.
class SpanList
{
public:
    void reset(std::vector<Span> spans, qsizetype textLength);

    qsizetype size() const { return m_gapStart + qsizetype(m_items.size()) - m_gapEnd; }
    Span at(qsizetype index) const
    {
        if (index < m_gapStart)
            return m_items[size_t(index)];
        const Span &stored = m_items[size_t(m_gapEnd + index - m_gapStart)];
        return {stored.start + m_length, stored.end + m_length};
    }

    // The index of the first span that ends after pos, or size().
    qsizetype firstEndingAfter(qsizetype pos) const;
    // The index of the first span that starts at or after pos, or size().
    qsizetype firstStartingFrom(qsizetype pos) const;

    // After an edit of the text: the spans [first, last) give way to spans,
    // given in offsets of the edited text, which is textLength long. The
    // spans from last on must lie behind the edit; they keep their distance
    // to the end of the text.
    void replace(qsizetype first, qsizetype last, const std::vector<Span> &spans,
                 qsizetype textLength);

private:
    template<typename Before> qsizetype partitionPoint(Before before) const;
    void moveGap(qsizetype index);

    std::vector<Span> m_items;
    // The logical spans are m_items[0, m_gapStart) in offsets, then
    // m_items[m_gapEnd, end) as offsets minus m_length.
    qsizetype m_gapStart = 0;
    qsizetype m_gapEnd = 0;
    qsizetype m_length = 0;
};

} // namespace Ombrel
