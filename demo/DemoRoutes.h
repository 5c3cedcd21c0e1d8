// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoCatalogue.h"
#include "DemoReply.h"
#include "DemoRequest.h"
#include "TorrentRoutes.h"

namespace tavelo {

/// What the demo's services answer, by the beginning of the path.
class DemoRoutes
{
public:
    explicit DemoRoutes(const QString &filmsFolder);

    DemoReply answer(const DemoRequest &request) const;

private:
    // `rest` is what follows the route's prefix, decoded.
    DemoReply search(const DemoRequest &request, const QString &rest) const;
    DemoReply metadata(const DemoRequest &request, const QString &rest) const;
    DemoReply download(const DemoRequest &request, const QString &rest) const;
    DemoReply poster(const DemoRequest &request, const QString &rest) const;
    DemoReply page(const DemoRequest &request, const QString &rest) const;

    DemoCatalogue m_catalogue;
    TorrentRoutes m_torrents;
};

} // namespace tavelo
