// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveFile.h"
#include "catalogue/MediaItem.h"

namespace tavelo {

/// What the service says about one item.
struct ArchiveDetails
{
    Q_GADGET
    Q_PROPERTY(tavelo::MediaItem item MEMBER item CONSTANT)
    Q_PROPERTY(QList<tavelo::ArchiveFile> files MEMBER files CONSTANT)
    Q_PROPERTY(bool restricted MEMBER restricted CONSTANT)
    Q_PROPERTY(QList<tavelo::ArchiveFile> playable READ playable CONSTANT)
    Q_PROPERTY(QList<tavelo::ArchiveFile> otherVideos READ otherVideos CONSTANT)
    Q_PROPERTY(QList<tavelo::ArchiveFile> subtitles READ subtitles CONSTANT)
    Q_PROPERTY(QUrl torrentURL READ torrentURL CONSTANT)

public:
    MediaItem item;
    QList<ArchiveFile> files; // MPEG-4 encodes first, then by size, the largest first
    bool restricted = false;
    QStringList nodeRoots; // addresses of hosts below which the same files are; each ends in "/"

    QList<ArchiveFile> playable() const;    // the built-in player's: MP4, M4V, MOV
    QList<ArchiveFile> otherVideos() const; // for download only
    QList<ArchiveFile> subtitles() const;   // SRT, VTT
    std::optional<ArchiveFile> torrent() const;
    /// Where that file is, for the screens: empty when there is none.
    QUrl torrentURL() const { return torrent().value_or(ArchiveFile()).url(); }

    /// Where `file` is, besides at its own address, which is the reliable one.
    QList<QUrl> alternatives(const ArchiveFile &file) const;

    bool operator==(const ArchiveDetails &) const = default;
};

} // namespace tavelo
