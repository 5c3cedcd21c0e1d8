// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/ByteSpans.h"

namespace tavelo {

void ByteSpans::add(const ByteSpan &span)
{
    if (span.isEmpty())
        return;
    ByteSpan grown = span;
    const auto touching = [&](const ByteSpan &other) {
        return other.first <= grown.end && other.end >= grown.first;
    };
    for (const ByteSpan &other : m_spans) {
        if (touching(other))
            grown = {std::min(grown.first, other.first), std::max(grown.end, other.end)};
    }
    m_spans.removeIf(touching);
    const auto behind = std::ranges::find_if(
        m_spans, [&](const ByteSpan &other) { return other.first > grown.first; });
    m_spans.insert(behind, grown);
}

void ByteSpans::clip(qint64 end)
{
    for (ByteSpan &span : m_spans)
        span.end = std::min(span.end, end);
    m_spans.removeIf([](const ByteSpan &span) { return span.isEmpty(); });
}

qint64 ByteSpans::bytes() const
{
    qint64 sum = 0;
    for (const ByteSpan &span : m_spans)
        sum += span.size();
    return sum;
}

qint64 ByteSpans::front() const
{
    return !m_spans.isEmpty() && m_spans.first().first == 0 ? m_spans.first().end : 0;
}

std::optional<ByteSpan> ByteSpans::around(qint64 place) const
{
    const auto found = std::ranges::find_if(
        m_spans, [place](const ByteSpan &span) { return span.contains(place); });
    return found == m_spans.end() ? std::nullopt : std::optional(*found);
}

ByteSpan ByteSpans::gapFrom(qint64 place, qint64 total) const
{
    ByteSpan gap{place, total};
    for (const ByteSpan &span : m_spans) {
        if (span.contains(gap.first))
            gap.first = span.end;
        else if (span.first > gap.first)
            return {gap.first, std::min(span.first, total)};
    }
    return gap;
}

} // namespace tavelo
