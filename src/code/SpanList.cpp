#include "SpanList.h"

#include <algorithm>

namespace Ombrel {

void SpanList::reset(std::vector<Span> spans, qsizetype textLength)
{
    m_items = std::move(spans);
    m_gapStart = m_gapEnd = qsizetype(m_items.size());
    m_length = textLength;
}

template<typename Before> qsizetype SpanList::partitionPoint(Before before) const
{
    qsizetype low = 0;
    qsizetype high = size();
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (before(at(middle)))
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

qsizetype SpanList::firstEndingAfter(qsizetype pos) const
{
    return partitionPoint([pos](const Span &span) { return span.end <= pos; });
}

qsizetype SpanList::firstStartingFrom(qsizetype pos) const
{
    return partitionPoint([pos](const Span &span) { return span.start < pos; });
}

void SpanList::moveGap(qsizetype index)
{
    while (m_gapStart > index) {
        Span span = m_items[size_t(--m_gapStart)];
        span.start -= m_length;
        span.end -= m_length;
        m_items[size_t(--m_gapEnd)] = span;
    }
    while (m_gapStart < index) {
        Span span = m_items[size_t(m_gapEnd++)];
        span.start += m_length;
        span.end += m_length;
        m_items[size_t(m_gapStart++)] = span;
    }
}

void SpanList::replace(qsizetype first, qsizetype last, const std::vector<Span> &spans,
                       qsizetype textLength)
{
    moveGap(first);
    m_gapEnd += last - first;
    const qsizetype needed = qsizetype(spans.size());
    if (m_gapEnd - m_gapStart < needed) {
        const qsizetype behind = qsizetype(m_items.size()) - m_gapEnd;
        const qsizetype gap = needed + size() / 4 + 64;
        std::vector<Span> grown(size_t(m_gapStart + gap + behind));
        std::copy(m_items.begin(), m_items.begin() + m_gapStart, grown.begin());
        std::copy(m_items.begin() + m_gapEnd, m_items.end(), grown.end() - behind);
        m_items = std::move(grown);
        m_gapEnd = m_gapStart + gap;
    }
    std::copy(spans.begin(), spans.end(), m_items.begin() + m_gapStart);
    m_gapStart += needed;
    m_length = textLength;
}

} // namespace Ombrel
