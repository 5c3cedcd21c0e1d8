// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "TorrentRoutes.h"

#include "ApiBayReply.h"
#include "TorznabReply.h"
#include "YtsReply.h"

#include <algorithm>
#include <array>

namespace tavelo {

namespace {

DemoReply pageOf(const DemoTorrent &torrent, const QString &title)
{
    return DemoReply::page(title, QStringLiteral("<p><a href=\"%1\">%2</a></p>")
                                      .arg(torrent.filePath(), torrent.name.toHtmlEscaped()));
}

} // namespace

DemoReply TorrentRoutes::answer(const DemoRequest &request) const
{
    struct Route
    {
        QLatin1String prefix;
        DemoReply (TorrentRoutes::*answer)(const DemoRequest &, const QString &) const;
    };
    static const std::array routes{
        Route{QLatin1String("/q.php"), &TorrentRoutes::apiBay},
        Route{QLatin1String("/api/v2/list_movies.json"), &TorrentRoutes::yts},
        Route{QLatin1String("/torznab/"), &TorrentRoutes::torznab},
        Route{QLatin1String("/torrents/"), &TorrentRoutes::torrentFile},
        Route{QLatin1String("/torrent/download/"), &TorrentRoutes::torrentFile},
        Route{QLatin1String("/movies/"), &TorrentRoutes::filmPage},
        Route{QLatin1String("/releases/"), &TorrentRoutes::releasePage},
    };
    const QString path = request.path();
    for (const Route &route : routes) {
        if (path.startsWith(route.prefix))
            return (this->*route.answer)(request, path.sliced(route.prefix.size()));
    }
    return DemoReply::notFound();
}

DemoReply TorrentRoutes::apiBay(const DemoRequest &request, const QString &rest) const
{
    return rest.isEmpty() ? ApiBayReply::of(request, m_torrents) : DemoReply::notFound();
}

DemoReply TorrentRoutes::yts(const DemoRequest &request, const QString &rest) const
{
    return rest.isEmpty() ? YtsReply::of(request, m_torrents) : DemoReply::notFound();
}

DemoReply TorrentRoutes::torznab(const DemoRequest &request, const QString &rest) const
{
    const QString indexer = rest.section(QLatin1Char('/'), 0, 0);
    return rest.sliced(indexer.size()) == QLatin1String("/api")
               ? TorznabReply::of(request, indexer, m_torrents)
               : DemoReply::notFound();
}

DemoReply TorrentRoutes::torrentFile(const DemoRequest &, const QString &rest) const
{
    const QLatin1String suffix(".torrent");
    const auto torrent =
        m_torrents.withHash(rest.endsWith(suffix) ? rest.chopped(suffix.size()) : rest);
    return torrent ? DemoReply::text(200, torrent->metainfo.file, "application/x-bittorrent")
                   : DemoReply::notFound();
}

DemoReply TorrentRoutes::filmPage(const DemoRequest &, const QString &rest) const
{
    const auto torrent = std::ranges::find_if(
        m_torrents.all(), [&](const DemoTorrent &one) { return one.filmSlug() == rest; });
    return torrent == m_torrents.all().end() ? DemoReply::notFound()
                                             : pageOf(*torrent, torrent->longFilmTitle());
}

DemoReply TorrentRoutes::releasePage(const DemoRequest &, const QString &rest) const
{
    const auto torrent = m_torrents.withHash(rest);
    return torrent ? pageOf(*torrent, torrent->name) : DemoReply::notFound();
}

} // namespace tavelo
