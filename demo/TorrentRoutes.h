// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrents.h"
#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// What the demo's torrent search services answer: ApiBay, YTS, Torznab indexers, the .torrent
/// files and the pages that they name.
class TorrentRoutes
{
public:
    /// To a request that reads; 404 for all that is not theirs.
    HttpAnswer answer(const HttpRequest &request) const;

private:
    // `rest` is what follows the route's prefix, decoded.
    HttpAnswer apiBay(const HttpRequest &request, const QString &rest) const;
    HttpAnswer yts(const HttpRequest &request, const QString &rest) const;
    HttpAnswer torznab(const HttpRequest &request, const QString &rest) const;
    HttpAnswer torrentFile(const HttpRequest &request, const QString &rest) const;
    HttpAnswer filmPage(const HttpRequest &request, const QString &rest) const;
    HttpAnswer releasePage(const HttpRequest &request, const QString &rest) const;

    DemoTorrents m_torrents;
};

} // namespace tavelo
