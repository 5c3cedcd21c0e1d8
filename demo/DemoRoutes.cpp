// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoRoutes.h"

#include <array>

namespace tavelo {

DemoRoutes::DemoRoutes(const QString &filmsFolder)
    : m_catalogue(filmsFolder)
{}

DemoReply DemoRoutes::answer(const DemoRequest &request) const
{
    struct Route
    {
        QLatin1String prefix;
        DemoReply (DemoRoutes::*answer)(const DemoRequest &, const QString &) const;
    };
    static const std::array routes{
        Route{QLatin1String("/advancedsearch.php"), &DemoRoutes::search},
        Route{QLatin1String("/metadata/"), &DemoRoutes::metadata},
        Route{QLatin1String("/download/"), &DemoRoutes::download},
        Route{QLatin1String("/services/img/"), &DemoRoutes::poster},
        Route{QLatin1String("/details/"), &DemoRoutes::page},
    };
    if (request.method != "GET" && request.method != "HEAD")
        return DemoReply::text(405, "Only to be read.", "text/plain");
    const QString path = request.path();
    for (const Route &route : routes) {
        if (path.startsWith(route.prefix))
            return (this->*route.answer)(request, path.sliced(route.prefix.size()));
    }
    return m_torrents.answer(request);
}

DemoReply DemoRoutes::search(const DemoRequest &request, const QString &rest) const
{
    if (!rest.isEmpty())
        return DemoReply::notFound();
    return DemoReply::text(200, m_catalogue.search(request.query()), "application/json");
}

DemoReply DemoRoutes::metadata(const DemoRequest &, const QString &rest) const
{
    return DemoReply::text(200, m_catalogue.metadata(rest), "application/json");
}

DemoReply DemoRoutes::download(const DemoRequest &request, const QString &rest) const
{
    const QString id = rest.section(QLatin1Char('/'), 0, 0);
    const QString name = rest.section(QLatin1Char('/'), 1);
    if (const auto torrent = m_catalogue.torrent(id, name))
        return DemoReply::text(200, *torrent, "application/x-bittorrent");
    const auto path = m_catalogue.filePath(id, name);
    return path ? DemoReply::ofFile(*path, request) : DemoReply::notFound();
}

DemoReply DemoRoutes::poster(const DemoRequest &request, const QString &rest) const
{
    const auto path = m_catalogue.posterPath(rest);
    return path ? DemoReply::ofFile(*path, request) : DemoReply::notFound();
}

DemoReply DemoRoutes::page(const DemoRequest &, const QString &rest) const
{
    const auto title = m_catalogue.title(rest);
    if (!title)
        return DemoReply::notFound();
    const QString id = QString::fromLatin1(rest.toUtf8().toPercentEncoding());
    return DemoReply::page(*title, QStringLiteral("<img src=\"/services/img/%1\" alt=\"\">"
                                                  "<p>An item's page in the demo.</p>")
                                       .arg(id));
}

} // namespace tavelo
