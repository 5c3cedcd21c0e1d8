// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoReply.h"
#include "DemoTorrents.h"

namespace tavelo {

/// What the demo's torrent search services answer: ApiBay, YTS, Torznab indexers, the .torrent
/// files and the pages that they name.
class TorrentRoutes
{
public:
    /// To a request that reads; 404 for all that is not theirs.
    DemoReply answer(const DemoRequest &request) const;

private:
    // `rest` is what follows the route's prefix, decoded.
    DemoReply apiBay(const DemoRequest &request, const QString &rest) const;
    DemoReply yts(const DemoRequest &request, const QString &rest) const;
    DemoReply torznab(const DemoRequest &request, const QString &rest) const;
    DemoReply torrentFile(const DemoRequest &request, const QString &rest) const;
    DemoReply filmPage(const DemoRequest &request, const QString &rest) const;
    DemoReply releasePage(const DemoRequest &request, const QString &rest) const;

    DemoTorrents m_torrents;
};

} // namespace tavelo
