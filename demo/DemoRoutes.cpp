// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoRoutes.h"

#include "DemoPage.h"

#include <array>

namespace tavelo {

namespace {

/// Of which a node's folder for an item is made.
constexpr const char *itemsFolder = "/7/items/";

bool isReading(const HttpRequest &request)
{
    return request.method == "GET" || request.method == "HEAD";
}

} // namespace

DemoRoutes::DemoRoutes(const QString &filmsFolder, const QStringList &nodes)
    : m_nodes(nodes)
    , m_catalogue(filmsFolder)
{}

HttpAnswer DemoRoutes::answer(const HttpRequest &request) const
{
    struct Route
    {
        QLatin1String prefix;
        HttpAnswer (DemoRoutes::*answer)(const HttpRequest &, const QString &) const;
    };
    static const std::array routes{
        Route{QLatin1String("/advancedsearch.php"), &DemoRoutes::search},
        Route{QLatin1String("/metadata/"), &DemoRoutes::metadata},
        Route{QLatin1String("/download/"), &DemoRoutes::download},
        Route{QLatin1String("/services/img/"), &DemoRoutes::poster},
        Route{QLatin1String("/details/"), &DemoRoutes::page},
    };
    if (!isReading(request))
        return {.body = "Only to be read.", .status = 405, .close = true};
    const QString path = request.path();
    for (const Route &route : routes) {
        if (path.startsWith(route.prefix))
            return (this->*route.answer)(request, path.sliced(route.prefix.size()));
    }
    return m_torrents.answer(request);
}

HttpAnswer DemoRoutes::search(const HttpRequest &request, const QString &rest) const
{
    if (!rest.isEmpty())
        return HttpAnswer::notFound();
    return HttpAnswer::json(QJsonDocument(m_catalogue.search(request.query())));
}

HttpAnswer DemoRoutes::metadata(const HttpRequest &, const QString &rest) const
{
    QStringList hosts;
    for (const QString &node : m_nodes)
        hosts.append(QUrl(node).authority());
    return {.headers = {{"Content-Type", "application/json"}},
            .slowBody = m_catalogue.metadata(rest, QLatin1String(itemsFolder) + rest, hosts)};
}

HttpAnswer DemoRoutes::download(const HttpRequest &request, const QString &rest) const
{
    if (fileAnswer(rest).status == 404)
        return HttpAnswer::notFound();
    const QString &node = m_nodes[(request.ordinal - 1) % m_nodes.size()];
    const QByteArray query = request.target.sliced(request.encodedPath().size());
    return {.status = 302,
            .headers = {{"Location", node.toLatin1() + itemsFolder +
                                         rest.toUtf8().toPercentEncoding("/") + query}}};
}

HttpAnswer DemoRoutes::file(const HttpRequest &request) const
{
    const QString path = request.path();
    return path.startsWith(QLatin1String(itemsFolder)) && isReading(request)
               ? fileAnswer(path.sliced(qsizetype(qstrlen(itemsFolder))))
               : HttpAnswer::notFound();
}

QByteArray DemoRoutes::addressOf(const HttpRequest &toNode)
{
    return QByteArray(toNode.target).replace(itemsFolder, "/download/");
}

HttpAnswer DemoRoutes::fileAnswer(const QString &idAndName) const
{
    const QString id = idAndName.section(QLatin1Char('/'), 0, 0);
    const QString name = idAndName.section(QLatin1Char('/'), 1);
    if (const auto torrent = m_catalogue.torrent(id, name))
        return HttpAnswer::text(200, *torrent, "application/x-bittorrent");
    const auto path = m_catalogue.filePath(id, name);
    return path ? HttpAnswer::ofFile(*path) : HttpAnswer::notFound();
}

HttpAnswer DemoRoutes::poster(const HttpRequest &, const QString &rest) const
{
    const auto path = m_catalogue.posterPath(rest);
    return path ? HttpAnswer::ofFile(*path) : HttpAnswer::notFound();
}

HttpAnswer DemoRoutes::page(const HttpRequest &, const QString &rest) const
{
    const auto title = m_catalogue.title(rest);
    if (!title)
        return HttpAnswer::notFound();
    const QString id = QString::fromLatin1(rest.toUtf8().toPercentEncoding());
    return DemoPage::of(*title, QStringLiteral("<img src=\"/services/img/%1\" alt=\"\">"
                                               "<p>An item's page in the demo.</p>")
                                    .arg(id));
}

} // namespace tavelo
