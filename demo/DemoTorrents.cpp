// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoTorrents.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace tavelo {

namespace {

constexpr qint64 firstCreated = 1'500'000'000; // seconds since 1970
constexpr qint64 betweenTwo = 31LL * 3600;

QList<QList<QByteArray>> trackersOf(const QJsonArray &tiers)
{
    QList<QList<QByteArray>> trackers;
    for (const QJsonValue &tier : tiers) {
        trackers.emplaceBack();
        for (const QJsonValue &tracker : tier.toArray())
            trackers.last().append(tracker.toString().toUtf8());
    }
    return trackers;
}

QString withContainer(const QString &name, const QString &container)
{
    const QString suffix = QLatin1Char('.') + container;
    return name.endsWith(suffix) ? name : name + suffix;
}

DemoMetainfo::Content contentOf(const QJsonObject &release)
{
    DemoMetainfo::Content content;
    content.name = release[QLatin1String("name")].toString();
    content.single = !release.contains(QLatin1String("files"));
    if (content.single) {
        content.name = withContainer(content.name, release[QLatin1String("container")].toString());
        content.files.append({content.name, release[QLatin1String("bytes")].toInteger()});
    }
    for (const QJsonValue &file : release[QLatin1String("files")].toArray())
        content.files.append(
            {file[QLatin1String("path")].toString(), file[QLatin1String("bytes")].toInteger()});
    return content;
}

bool hasEveryWord(const QString &title, const QString &query)
{
    const QStringList words = query.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return std::ranges::all_of(
        words, [&title](const QString &word) { return title.contains(word, Qt::CaseInsensitive); });
}

} // namespace

DemoTorrents::DemoTorrents()
{
    QFile file(QStringLiteral(":/demo/torrents.json"));
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    for (const QJsonValue &indexer : root[QLatin1String("indexers")].toArray())
        m_indexers.insert(indexer[QLatin1String("name")].toString(), indexer.toObject());
    for (const QJsonValue &film : root[QLatin1String("films")].toArray())
        addFilm(film.toObject(), root[QLatin1String("tiers")].toArray());
}

void DemoTorrents::addFilm(const QJsonObject &film, const QJsonArray &tiers)
{
    for (const QJsonValue &value : film[QLatin1String("releases")].toArray()) {
        const QJsonObject release = value.toObject();
        DemoTorrent torrent;
        torrent.id = m_torrents.size() + 1;
        torrent.name = release[QLatin1String("name")].toString();
        torrent.film = film;
        torrent.listings = release[QLatin1String("on")].toObject();
        torrent.content = contentOf(release);
        const QJsonValue own = release[QLatin1String("tiers")];
        torrent.content.trackers = trackersOf(own.isArray() ? own.toArray() : tiers);
        torrent.content.created = firstCreated + torrent.id * betweenTwo;
        torrent.metainfo = DemoMetainfo::of(torrent.content);
        m_torrents.append(torrent);
    }
}

QList<DemoTorrent> DemoTorrents::found(const QString &service, const QString &query) const
{
    QList<DemoTorrent> found;
    const bool byFilm = service == QLatin1String("yts");
    for (const DemoTorrent &torrent : m_torrents) {
        if (torrent.listings.contains(service) &&
            hasEveryWord(byFilm ? torrent.longFilmTitle() : torrent.name, query))
            found.append(torrent);
    }
    return found;
}

std::optional<DemoTorrent> DemoTorrents::withHash(const QString &hash) const
{
    const QByteArray wanted = hash.toLatin1().toLower();
    const auto torrent = std::ranges::find_if(
        m_torrents, [&](const DemoTorrent &one) { return one.metainfo.infoHash == wanted; });
    return torrent == m_torrents.end() ? std::nullopt : std::optional(*torrent);
}

} // namespace tavelo
