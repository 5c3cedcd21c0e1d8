// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace tavelo {

/// One file of a torrent, by what its metainfo says of it.
struct TorrentFileEntry
{
    Q_GADGET
    Q_PROPERTY(QString path MEMBER path CONSTANT)
    Q_PROPERTY(qint64 size MEMBER size CONSTANT)

public:
    QString path;    // starts with the torrent's name; components joined by "/"; for display only
    qint64 size = 0; // bytes, as stated: possibly negative

    bool operator==(const TorrentFileEntry &) const = default;
};

/// What is known of a torrent from its metainfo (BEP 3) or from a magnet link (BEP 9).
struct TorrentInfo
{
    QString name;
    QString infoHash; // 40 lowercase hexadecimal digits
    QList<TorrentFileEntry> files;
    QStringList trackers; // announce addresses, as text
    /// Letter for letter: a QUrl would decode some of its escapes. Made by makeMagnet, or received.
    QString magnet;
    std::optional<QUrl> fileURL; // the .torrent file on disk, when it came from one

    /// In bytes. A sum beyond 64 bits stays at their limit.
    qint64 totalSize() const;

    bool operator==(const TorrentInfo &) const = default;
};

} // namespace tavelo
