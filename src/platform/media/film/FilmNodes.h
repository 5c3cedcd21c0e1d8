// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/Slice.h"

#include <QList>
#include <QUrl>

namespace tavelo {

/// Where a film is asked for: at the node that an earlier answer came from, for as long as that
/// answers; else at the item's own address, which may lead elsewhere by now; and where that leads
/// to nothing, at the other nodes that the catalogue names.
class FilmNodes
{
public:
    using Address = Slice::Address;

    explicit FilmNodes(QUrl item);

    const QUrl &item() const { return m_item; }
    void setAlternatives(const QList<QUrl> &urls);

    Address current() const;
    /// `counted`: as the request of a viewer, which counts as a view of the item.
    QUrl url(Address address, bool counted) const;

    /// Grows when the film is asked for at another place because it was not to be had at the last.
    int turn() const { return m_turn; }

    /// An answer came from there.
    void found(const QUrl &source) { m_node = source; }
    /// The service leads there, it says to a request of that turn.
    void led(const QUrl &to, int turn);
    /// A request failed that would not have failed elsewhere, maybe.
    void failed(const Slice &slice);
    /// The film is not where it asked. False when there is no other place left to ask.
    bool refused(const Slice &slice);

private:
    bool forgetNode(const Slice &slice);

    const QUrl m_item;
    QUrl m_node;
    QList<QUrl> m_alternatives;
    qsizetype m_alternative = -1; // the one that is asked; -1: the item's own address is
    int m_turn = 0;
};

} // namespace tavelo
