// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoCatalogue.h"
#include "TorrentRoutes.h"

namespace tavelo {

/// What the demo's services answer, by the beginning of the path.
class DemoRoutes
{
public:
    /// `nodes`: scheme, host and port of each host that has the files.
    DemoRoutes(const QString &filmsFolder, const QStringList &nodes);

    /// On the catalogue's own host.
    HttpAnswer answer(const HttpRequest &request) const;
    /// On a node.
    HttpAnswer file(const HttpRequest &request) const;
    /// The download address on the catalogue's host, path and query, that leads to a node's file.
    static QByteArray addressOf(const HttpRequest &toNode);

private:
    // `rest` is what follows the route's prefix, decoded.
    HttpAnswer search(const HttpRequest &request, const QString &rest) const;
    HttpAnswer metadata(const HttpRequest &request, const QString &rest) const;
    HttpAnswer download(const HttpRequest &request, const QString &rest) const;
    HttpAnswer poster(const HttpRequest &request, const QString &rest) const;
    HttpAnswer fileAnswer(const QString &idAndName) const;
    HttpAnswer page(const HttpRequest &request, const QString &rest) const;

    const QStringList m_nodes;
    DemoCatalogue m_catalogue;
    TorrentRoutes m_torrents;
};

} // namespace tavelo
