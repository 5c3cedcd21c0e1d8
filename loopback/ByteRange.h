// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace tavelo {

/// Part of a file, from its first to its last byte. Empty when the file has nothing of it.
struct ByteRange
{
    qint64 first = 0;
    qint64 last = -1;

    bool isEmpty() const { return last < first; }
    qint64 length() const { return last - first + 1; }

    /// A Range header for a file of `size` bytes; absent when it must be ignored: malformed, of
    /// another unit, or more than one range.
    static std::optional<ByteRange> parsed(const QByteArray &header, qint64 size);
};

} // namespace tavelo
