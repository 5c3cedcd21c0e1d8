// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/BodyVersion.h"
#include "platform/media/film/ByteSpan.h"

#include <QIODevice>
#include <QList>

#include <functional>
#include <optional>

namespace tavelo {

class Mp4Index;

/// What is kept of a film that was opened: enough to show it again from where it was left, before
/// any byte of it comes.
struct KeptFilm
{
    struct Piece
    {
        qint64 offset = 0;
        QByteArray bytes = {};

        ByteSpan span() const { return {offset, offset + bytes.size()}; }
        bool operator==(const Piece &) const = default;
    };

    /// Of all pieces together, and with what tells of them.
    static constexpr qint64 maxBytes = 40 * 1024 * 1024;
    static constexpr qint64 maxMediaBytes = 4 * 1024 * 1024;
    static constexpr qsizetype maxPieces = 1024;

    QByteArray key;      // of its address, see keyOf()
    BodyVersion version; // its source is not kept: an answering host is good for a while only
    QList<Piece> pieces; // none empty, none beyond the file's end

    bool operator==(const KeptFilm &) const = default;

    /// The key of a film's own address, from which the address cannot be told.
    static QByteArray keyOf(const QUrl &url);

    /// The media that lets it be shown again where it is left, at `place` seconds: that of the last
    /// 15 seconds and of the next 2. Less in front where that is more than maxMediaBytes, or where
    /// not all up to `place` is held, as after a jump.
    static ByteSpan mediaAround(const Mp4Index &index, double place,
                                const std::function<bool(const ByteSpan &)> &isHeld);

    /// As a file. Empty when it is more than may be kept.
    QByteArray encoded() const;

    /// What encoded() has made. Absent when it is damaged or something else. Takes no more memory
    /// than maxBytes, whatever the file claims.
    static std::optional<KeptFilm> read(QIODevice &file);
};

} // namespace tavelo
