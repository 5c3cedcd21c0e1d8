// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

namespace tavelo {

/// The rows of one of an index's tables, each of the same number of bytes, where they lie. There
/// are as many as the table claims, or none of it. A view.
class Mp4Rows
{
public:
    Mp4Rows() = default; // no rows

    /// The first `count` rows of `bytes`. Absent when fewer are there.
    static std::optional<Mp4Rows> of(QByteArrayView bytes, qint64 count, qsizetype width)
    {
        if (count > bytes.size() / width)
            return {};
        return Mp4Rows(bytes.first(count * width), width);
    }

    /// The rows that lie behind their number, which lies at `countAt` of a box's content.
    static std::optional<Mp4Rows> read(QByteArrayView content, qsizetype countAt, qsizetype width)
    {
        if (content.size() < countAt + 4)
            return {};
        return of(content.sliced(countAt + 4), qFromBigEndian<quint32>(content.data() + countAt),
                  width);
    }

    qint64 count() const { return m_bytes.size() / m_width; }

    /// The number of this type that lies `at` bytes into the row.
    template <typename Number>
    Number value(qint64 row, qsizetype at = 0) const
    {
        return qFromBigEndian<Number>(m_bytes.data() + row * m_width + at);
    }

private:
    Mp4Rows(QByteArrayView bytes, qsizetype width)
        : m_bytes(bytes)
        , m_width(width)
    {}

    QByteArrayView m_bytes;
    qsizetype m_width = 1;
};

} // namespace tavelo
