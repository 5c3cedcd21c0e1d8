// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TorrentSort.h"

#include <QList>

namespace tavelo {

struct TorrentRow;

/// By which keys rows are sorted, the leading one first; best seeded first until one is chosen.
class TorrentOrder
{
public:
    TorrentSort::Key leading() const { return m_terms.first().key; }
    bool descending() const { return m_terms.first().descending; }

    /// Turns the leading key round, or makes another the leading one, ascending. Those that led
    /// before stay behind it.
    void choose(TorrentSort::Key key);

    /// Sorts places in `rows`. Those of equal rows keep their order.
    void sort(QList<int> &places, const QList<TorrentRow> &rows) const;

private:
    struct Term
    {
        TorrentSort::Key key = TorrentSort::Title;
        bool descending = false;
    };

    bool isBefore(const TorrentRow &row, const TorrentRow &other) const;

    QList<Term> m_terms{{TorrentSort::Seeds, true}};
};

} // namespace tavelo
