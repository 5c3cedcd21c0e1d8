// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentOrder.h"

#include "ui/TorrentRow.h"

#include <algorithm>

namespace tavelo {

void TorrentOrder::choose(TorrentSort::Key key)
{
    if (key == leading()) {
        m_terms.first().descending = !m_terms.first().descending;
        return;
    }
    m_terms.removeIf([key](const Term &term) { return term.key == key; });
    m_terms.prepend({key, false});
}

void TorrentOrder::sort(QList<int> &places, const QList<TorrentRow> &rows) const
{
    std::ranges::stable_sort(places,
                             [&](int a, int b) { return isBefore(rows.at(a), rows.at(b)); });
}

bool TorrentOrder::isBefore(const TorrentRow &row, const TorrentRow &other) const
{
    for (const auto [key, descending] : m_terms) {
        if (row.keys[key] != other.keys[key])
            return (row.keys[key] < other.keys[key]) != descending;
    }
    return false;
}

} // namespace tavelo
