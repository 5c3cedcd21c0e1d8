// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrent.h"

#include <QHash>

#include <optional>

namespace tavelo {

/// The torrents that the demo's search services know, film by film.
class DemoTorrents
{
public:
    /// Read from the description that is built in.
    DemoTorrents();

    const QList<DemoTorrent> &all() const { return m_torrents; }
    /// What `service` lists and whose title has every word of `query`, in any letter case. On the
    /// films' own service the title is the film's and its year, elsewhere the release's name.
    QList<DemoTorrent> found(const QString &service, const QString &query) const;
    /// By its info hash, in any letter case.
    std::optional<DemoTorrent> withHash(const QString &hash) const;
    /// The description of a Torznab indexer; empty when there is none of that name.
    QJsonObject indexer(const QString &name) const { return m_indexers.value(name); }

private:
    void addFilm(const QJsonObject &film, const QJsonArray &tiers);

    QList<DemoTorrent> m_torrents;
    QHash<QString, QJsonObject> m_indexers;
};

} // namespace tavelo
