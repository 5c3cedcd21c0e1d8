// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/TextBudget.h"
#include "platform/Utf8.h"
#include "torrent/BencodeParser.h"
#include "torrent/InfoHash.h"
#include "torrent/Magnet.h"
#include "torrent/TorrentMetadata.h"
#include "torrent/TorrentParseError.h"

#include <algorithm>

namespace tavelo::TorrentMetadata {

namespace {

QString nameOf(const Bencode &info)
{
    for (const char *key : {"name.utf-8", "name"}) {
        const auto value = info.value(key);
        if (const auto name = value ? value->string() : std::nullopt)
            return *name;
    }
    return QStringLiteral("Unnamed torrent");
}

QString pathOf(const Bencode &file, const QString &torrentName)
{
    auto components = file.value("path.utf-8");
    if (!components)
        components = file.value("path");
    QString path = torrentName;
    if (!components || !components->isList())
        return path;
    for (const Bencode &component : components->elements()) {
        if (const auto bytes = component.bytes()) {
            path += QLatin1Char('/');
            Utf8::appendDecoded(path, *bytes);
        }
    }
    return path;
}

std::optional<qint64> lengthOf(const Bencode &entry)
{
    const auto length = entry.value("length");
    return length ? length->integer() : std::nullopt;
}

// Absent when the paths, each of which repeats the torrent's name, outgrow `budget` characters.
std::optional<QList<TorrentFileEntry>> filesOf(const Bencode &info, const QString &name,
                                               qsizetype budget)
{
    QList<TorrentFileEntry> files;
    const auto list = info.value("files");
    if (!list || !list->isList()) {
        if (const auto length = lengthOf(info))
            files.append({name, *length});
        return files;
    }
    for (const Bencode &file : list->elements()) {
        const auto length = lengthOf(file);
        if (!length)
            continue;
        files.append({pathOf(file, name), *length});
        budget -= files.last().path.size();
        if (budget < 0)
            return {};
    }
    return files;
}

QStringList trackersOf(const Bencode &root)
{
    QStringList trackers;
    const auto append = [&](const Bencode &value) {
        if (const auto address = value.string())
            trackers.append(*address);
    };
    if (const auto announce = root.value("announce"))
        append(*announce);
    const auto tiers = root.value("announce-list");
    if (tiers && tiers->isList()) {
        for (const Bencode &tier : tiers->elements()) {
            if (!tier.isList())
                continue;
            for (const Bencode &tracker : tier.elements())
                append(tracker);
        }
    }
    trackers.sort();
    trackers.erase(std::unique(trackers.begin(), trackers.end()), trackers.end());
    return trackers;
}

} // namespace

Result<TorrentInfo> parseTorrent(const QByteArray &data)
{
    BencodeParser parser(data);
    const auto root = parser.parse();
    if (!root)
        return root.error();
    const auto info = root->value("info");
    const auto slice = parser.infoSlice();
    if (!info || !info->isDict() || !slice)
        return TorrentParseError();
    TorrentInfo torrent;
    torrent.name = nameOf(*info);
    torrent.infoHash = infoHashOf(*slice);
    auto files = filesOf(*info, torrent.name, textBudget(data.size()));
    if (!files)
        return TorrentParseError();
    torrent.files = *std::move(files);
    torrent.trackers = trackersOf(*root);
    torrent.magnet = makeMagnet(torrent.infoHash, torrent.name);
    return torrent;
}

} // namespace tavelo::TorrentMetadata
