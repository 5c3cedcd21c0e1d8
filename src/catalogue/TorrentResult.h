// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One hit of a provider search: a torrent, or an item of the film catalogue. Its addresses come
/// from strangers and may have any scheme.
struct TorrentResult
{
    QString id; // identity in lists
    QString title;
    std::optional<qint64> size; // bytes
    std::optional<qint64> seeders;
    std::optional<qint64> leechers;
    QStringList sources;              // names of the providers that reported it
    std::optional<QString> infoHash;  // lowercase hexadecimal
    std::optional<QString> magnet;    // letter for letter: a QUrl would decode some of its escapes
    std::optional<QUrl> torrentURL;   // of a .torrent file
    std::optional<QString> archiveID; // the catalogue's identifier, for its items only
    std::optional<QUrl> pageURL;
    std::optional<QString> year;
    std::optional<QString> license; // address of a catalogue item's licence, as text

    // What tables sort by: an absent number comes before every real one.
    qint64 sizeSort() const { return size.value_or(-1); }
    qint64 seedersSort() const { return seeders.value_or(-1); }
    qint64 leechersSort() const { return leechers.value_or(-1); }
    /// The sources in ascending order, joined with ", ".
    QString sourceSort() const;

    /// By what the title says: "2160p", "1080p", "720p", "480p", "SD", "HD", or a dash.
    QString quality() const;
    /// The container that the title names; without one "mp4" for catalogue items, else a dash.
    QString format() const;

    bool operator==(const TorrentResult &) const = default;
};

} // namespace tavelo
