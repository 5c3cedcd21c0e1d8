// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ApiBayReply.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace tavelo {

namespace {

QString number(qint64 value)
{
    return QString::number(value);
}

QString category(const QString &name)
{
    const bool highDefinition = name.contains(QLatin1String("1080p")) ||
                                name.contains(QLatin1String("720p")) ||
                                name.contains(QLatin1String("2160p"));
    return highDefinition ? QStringLiteral("207") : QStringLiteral("201");
}

QJsonObject row(const DemoTorrent &torrent)
{
    const QJsonObject listing = torrent.on(QStringLiteral("apibay"));
    return {{QStringLiteral("id"), number(37'000'000 + torrent.id)},
            {QStringLiteral("name"), torrent.name},
            {QStringLiteral("info_hash"), QLatin1String(torrent.metainfo.infoHash.toUpper())},
            {QStringLiteral("leechers"), number(listing[QLatin1String("leechers")].toInteger())},
            {QStringLiteral("seeders"), number(listing[QLatin1String("seeders")].toInteger())},
            {QStringLiteral("num_files"), number(torrent.content.files.size())},
            {QStringLiteral("size"), number(torrent.bytes())},
            {QStringLiteral("username"), QStringLiteral("projectionist")},
            {QStringLiteral("added"), number(torrent.content.created)},
            {QStringLiteral("status"), QLatin1String(torrent.id % 3 == 0 ? "vip" : "member")},
            {QStringLiteral("category"), category(torrent.name)},
            {QStringLiteral("imdb"), QString()}};
}

/// What the service says instead of nothing.
QJsonObject placeholder()
{
    const QString none = QStringLiteral("0");
    return {{QStringLiteral("id"), none},
            {QStringLiteral("name"), QStringLiteral("No results returned")},
            {QStringLiteral("info_hash"), none.repeated(40)},
            {QStringLiteral("leechers"), none},
            {QStringLiteral("seeders"), none},
            {QStringLiteral("num_files"), none},
            {QStringLiteral("size"), none},
            {QStringLiteral("username"), QString()},
            {QStringLiteral("added"), none},
            {QStringLiteral("status"), QStringLiteral("member")},
            {QStringLiteral("category"), none},
            {QStringLiteral("imdb"), QString()},
            {QStringLiteral("total_found"), QStringLiteral("1")}};
}

} // namespace

HttpAnswer ApiBayReply::of(const HttpRequest &request, const DemoTorrents &torrents)
{
    QJsonArray rows;
    for (const DemoTorrent &torrent :
         torrents.found(QStringLiteral("apibay"), request.queryValue("q")))
        rows.append(row(torrent));
    if (rows.isEmpty())
        rows.append(placeholder());
    return HttpAnswer::json(QJsonDocument(rows));
}

} // namespace tavelo
