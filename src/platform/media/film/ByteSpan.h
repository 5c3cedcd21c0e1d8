// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <algorithm>

namespace tavelo {

/// Bytes of a film by their places: from `first` up to, and without, `end`.
struct ByteSpan
{
    qint64 first = 0;
    qint64 end = 0;

    bool isEmpty() const { return end <= first; }
    qint64 size() const { return std::max<qint64>(end - first, 0); }
    bool contains(qint64 place) const { return place >= first && place < end; }
    ByteSpan intersected(const ByteSpan &other) const
    {
        return {std::max(first, other.first), std::min(end, other.end)};
    }

    bool operator==(const ByteSpan &) const = default;
};

} // namespace tavelo
