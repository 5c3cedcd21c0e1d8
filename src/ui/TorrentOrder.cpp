// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentOrder.h"

#include "ui/TorrentRow.h"

#include <algorithm>
#include <vector>

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
    // Mostly the leading key decides, and is read here without going to the row.
    struct Placed
    {
        qint64 lead = 0;
        int place = 0;
    };
    std::vector<Placed> sorted;
    sorted.reserve(static_cast<std::size_t>(places.size()));
    for (const int place : places)
        sorted.push_back({rows.at(place).keys[leading()], place});
    std::ranges::stable_sort(sorted, [&](const Placed &a, const Placed &b) {
        if (a.lead != b.lead)
            return (a.lead < b.lead) != descending();
        return isBefore(rows.at(a.place), rows.at(b.place));
    });
    std::ranges::transform(sorted, places.begin(), &Placed::place);
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
