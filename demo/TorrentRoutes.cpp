// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "TorrentRoutes.h"

#include "ApiBayReply.h"
#include "DemoPage.h"
#include "TorznabReply.h"
#include "YtsReply.h"

#include <algorithm>
#include <array>

namespace tavelo {

namespace {

HttpAnswer pageOf(const DemoTorrent &torrent, const QString &title)
{
    return DemoPage::of(title, QStringLiteral("<p><a href=\"%1\">%2</a></p>")
                                   .arg(torrent.filePath(), torrent.name.toHtmlEscaped()));
}

} // namespace

HttpAnswer TorrentRoutes::answer(const HttpRequest &request) const
{
    struct Route
    {
        QLatin1String prefix;
        HttpAnswer (TorrentRoutes::*answer)(const HttpRequest &, const QString &) const;
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
    return HttpAnswer::notFound();
}

HttpAnswer TorrentRoutes::apiBay(const HttpRequest &request, const QString &rest) const
{
    return rest.isEmpty() ? ApiBayReply::of(request, m_torrents) : HttpAnswer::notFound();
}

HttpAnswer TorrentRoutes::yts(const HttpRequest &request, const QString &rest) const
{
    return rest.isEmpty() ? YtsReply::of(request, m_torrents) : HttpAnswer::notFound();
}

HttpAnswer TorrentRoutes::torznab(const HttpRequest &request, const QString &rest) const
{
    const QString indexer = rest.section(QLatin1Char('/'), 0, 0);
    return rest.sliced(indexer.size()) == QLatin1String("/api")
               ? TorznabReply::of(request, indexer, m_torrents)
               : HttpAnswer::notFound();
}

HttpAnswer TorrentRoutes::torrentFile(const HttpRequest &, const QString &rest) const
{
    const QLatin1String suffix(".torrent");
    const auto torrent =
        m_torrents.withHash(rest.endsWith(suffix) ? rest.chopped(suffix.size()) : rest);
    return torrent ? HttpAnswer::text(200, torrent->metainfo.file, "application/x-bittorrent")
                   : HttpAnswer::notFound();
}

HttpAnswer TorrentRoutes::filmPage(const HttpRequest &, const QString &rest) const
{
    const auto torrent = std::ranges::find_if(
        m_torrents.all(), [&](const DemoTorrent &one) { return one.filmSlug() == rest; });
    return torrent == m_torrents.all().end() ? HttpAnswer::notFound()
                                             : pageOf(*torrent, torrent->longFilmTitle());
}

HttpAnswer TorrentRoutes::releasePage(const HttpRequest &, const QString &rest) const
{
    const auto torrent = m_torrents.withHash(rest);
    return torrent ? pageOf(*torrent, torrent->name) : HttpAnswer::notFound();
}

} // namespace tavelo
