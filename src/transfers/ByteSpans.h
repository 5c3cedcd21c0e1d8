// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ByteSpan.h"

#include <QList>

#include <optional>

namespace tavelo {

/// Which bytes of a file are there: spans in order that neither touch nor overlap.
class ByteSpans
{
public:
    void add(const ByteSpan &span);
    /// Leaves what lies before `end`.
    void clip(qint64 end);
    void clear() { m_spans.clear(); }

    const QList<ByteSpan> &all() const { return m_spans; }
    bool isEmpty() const { return m_spans.isEmpty(); }
    qint64 bytes() const;
    /// How many are there from the first one on without a gap.
    qint64 front() const;
    /// The end of the last one.
    qint64 end() const { return m_spans.isEmpty() ? 0 : m_spans.last().end; }
    /// The span that holds the byte at `place`.
    std::optional<ByteSpan> around(qint64 place) const;
    /// The gap that begins at `place` or behind it and ends at `total` or before. Empty: none.
    ByteSpan gapFrom(qint64 place, qint64 total) const;

    bool operator==(const ByteSpans &) const = default;

private:
    QList<ByteSpan> m_spans;
};

} // namespace tavelo
