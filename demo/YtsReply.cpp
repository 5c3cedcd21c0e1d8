// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "YtsReply.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>
#include <QUrl>

namespace tavelo {

namespace {

constexpr int usualLimit = 20;

void insertDate(QJsonObject &object, const DemoTorrent &torrent)
{
    const QDateTime date = QDateTime::fromSecsSinceEpoch(torrent.content.created, Qt::UTC);
    object.insert(QStringLiteral("date_uploaded"),
                  date.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    object.insert(QStringLiteral("date_uploaded_unix"), torrent.content.created);
}

QJsonObject torrentObject(const DemoTorrent &torrent, const QString &base)
{
    const QJsonObject listing = torrent.on(QStringLiteral("yts"));
    const QString hash = QString::fromLatin1(torrent.metainfo.infoHash.toUpper());
    QJsonObject object{
        {QStringLiteral("url"), base + QStringLiteral("/torrent/download/") + hash},
        {QStringLiteral("hash"), hash},
        {QStringLiteral("quality"), listing[QLatin1String("quality")]},
        {QStringLiteral("seeds"), listing[QLatin1String("seeders")]},
        {QStringLiteral("peers"), listing[QLatin1String("leechers")]},
        {QStringLiteral("size"),
         QLocale::c().formattedDataSize(torrent.bytes(), 2, QLocale::DataSizeTraditionalFormat)},
        {QStringLiteral("size_bytes"), torrent.bytes()}};
    if (listing.contains(QLatin1String("type")))
        object.insert(QStringLiteral("type"), listing[QLatin1String("type")]);
    insertDate(object, torrent);
    return object;
}

QJsonObject movieObject(const DemoTorrent &torrent, const QString &base)
{
    const QString title = torrent.filmTitle();
    const QString slug = torrent.filmSlug();
    QJsonObject movie{{QStringLiteral("id"), torrent.id},
                      {QStringLiteral("url"), base + QStringLiteral("/movies/") +
                                                  QLatin1String(QUrl::toPercentEncoding(slug))},
                      {QStringLiteral("title"), title},
                      {QStringLiteral("title_english"), title},
                      {QStringLiteral("title_long"), torrent.longFilmTitle()},
                      {QStringLiteral("slug"), slug},
                      {QStringLiteral("year"), torrent.film[QLatin1String("year")]},
                      {QStringLiteral("rating"), double(50 + torrent.id * 7 % 45) / 10},
                      {QStringLiteral("runtime"), torrent.film[QLatin1String("runtime")]},
                      {QStringLiteral("genres"), torrent.film[QLatin1String("genres")]},
                      {QStringLiteral("language"), QStringLiteral("English")},
                      {QStringLiteral("state"), QStringLiteral("ok")}};
    const QString item = torrent.film[QLatin1String("item")].toString();
    if (!item.isEmpty())
        movie.insert(QStringLiteral("medium_cover_image"),
                     base + QStringLiteral("/services/img/") + item);
    insertDate(movie, torrent);
    return movie;
}

/// `found` stands film by film.
QJsonArray movies(const QList<DemoTorrent> &found, const QString &base)
{
    QJsonArray movies;
    for (qsizetype i = 0; i < found.size();) {
        QJsonObject movie = movieObject(found[i], base);
        const QString film = found[i].longFilmTitle();
        QJsonArray torrents;
        for (; i < found.size() && found[i].longFilmTitle() == film; ++i)
            torrents.append(torrentObject(found[i], base));
        movie.insert(QStringLiteral("torrents"), torrents);
        movies.append(movie);
    }
    return movies;
}

} // namespace

HttpAnswer YtsReply::of(const HttpRequest &request, const DemoTorrents &torrents)
{
    QJsonArray all = movies(torrents.found(QStringLiteral("yts"), request.queryValue("query_term")),
                            request.base());
    const int asked = request.queryValue("limit").toInt();
    const int limit = asked > 0 ? asked : usualLimit;
    QJsonObject data{{QStringLiteral("movie_count"), all.size()},
                     {QStringLiteral("limit"), limit},
                     {QStringLiteral("page_number"), 1}};
    while (all.size() > limit)
        all.removeLast();
    if (!all.isEmpty())
        data.insert(QStringLiteral("movies"), all);
    const QJsonObject root{
        {QStringLiteral("status"), QStringLiteral("ok")},
        {QStringLiteral("status_message"), QStringLiteral("Query was successful")},
        {QStringLiteral("data"), data},
        {QStringLiteral("@meta"), QJsonObject{{QStringLiteral("api_version"), 2}}}};
    return HttpAnswer::json(QJsonDocument(root));
}

} // namespace tavelo
