// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtNumeric>

#include <algorithm>

/// Sums and products of what a stranger's file claims: none overflows, they stop at `farthest`. For
/// numbers that are not negative.
namespace tavelo::Mp4Numbers {

/// So far below the end of the numbers that small ones can still be added to it.
inline constexpr qint64 farthest = qint64(1) << 61;

inline qint64 product(qint64 a, qint64 b)
{
    qint64 value = 0;
    return qMulOverflow(a, b, &value) ? farthest : std::min(value, farthest);
}

inline qint64 sum(qint64 a, qint64 b)
{
    qint64 value = 0;
    return qAddOverflow(a, b, &value) ? farthest : std::min(value, farthest);
}

} // namespace tavelo::Mp4Numbers
