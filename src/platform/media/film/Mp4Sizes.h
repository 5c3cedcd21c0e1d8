// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/Mp4Rows.h"

namespace tavelo {

/// How many bytes each sample of a track has (boxes stsz and stz2). A view of the index.
class Mp4Sizes
{
public:
    /// `stbl` is the content of that box. Absent when damaged.
    static std::optional<Mp4Sizes> read(QByteArrayView stbl);

    qint64 count() const { return m_count; }
    /// Of the samples from `first` up to, and without, `end`; at most farthest.
    qint64 sum(qint64 first, qint64 end) const;

private:
    static std::optional<Mp4Sizes> readPlain(QByteArrayView stsz);
    static std::optional<Mp4Sizes> readCompact(QByteArrayView stz2);
    qint64 size(qint64 sample) const;

    qint64 m_count = 0;
    quint32 m_each = 0; // 0: the rows tell
    int m_bits = 32;    // of a size in the rows; two of 4 bits share a row
    Mp4Rows m_rows;
};

} // namespace tavelo
