// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/Mp4Numbers.h"
#include "platform/media/film/Mp4Rows.h"

namespace tavelo {

/// Goes forward over the samples of a table whose rows tell of how many samples, one after the
/// other, a number holds (boxes stts and ctts). All samples together take one walk over the rows.
class Mp4Runs
{
public:
    static constexpr qsizetype width = 8; // of a row

    explicit Mp4Runs(Mp4Rows rows)
        : m_rows(rows)
    {}

    bool isAtEnd() const { return m_row >= m_rows.count(); }
    void nextRow()
    {
        m_sum = end();
        m_first += length();
        ++m_row;
    }
    /// Never back.
    void goTo(qint64 sample)
    {
        while (!isAtEnd() && sample >= m_first + length())
            nextRow();
    }

    // Of the row that it stands at, not at the end.
    qint64 first() const { return m_first; } // sample
    qint64 length() const { return m_rows.value<quint32>(m_row); }
    quint32 number() const { return m_rows.value<quint32>(m_row, 4); }
    qint32 signedNumber() const { return m_rows.value<qint32>(m_row, 4); }

    /// The numbers of all samples before the row, added up.
    qint64 sum() const { return m_sum; }
    /// Those of the row's samples too.
    qint64 end() const { return Mp4Numbers::sum(m_sum, Mp4Numbers::product(length(), number())); }
    /// The numbers of all samples before `sample` added up, which it has gone to.
    qint64 tickOf(qint64 sample) const
    {
        return isAtEnd() ? m_sum
                         : Mp4Numbers::sum(m_sum, Mp4Numbers::product(sample - m_first, number()));
    }

private:
    Mp4Rows m_rows;
    qint64 m_row = 0;
    qint64 m_first = 0;
    qint64 m_sum = 0;
};

} // namespace tavelo
