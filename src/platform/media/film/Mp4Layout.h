// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ByteSpan.h"

#include <QByteArray>

#include <functional>
#include <optional>

namespace tavelo {

/// Bytes of the film that are held, from `offset` on: exactly `count` of them, absent when not all
/// are held.
using HeldBytes = std::function<std::optional<QByteArray>(qint64 offset, qint64 count)>;

/// Where the parts of an MP4, M4V or MOV file lie, as far as the bytes that are held tell.
struct Mp4Layout
{
    /// A larger index is none for us.
    static constexpr qint64 maxIndexBytes = 32 * 1024 * 1024;

    std::optional<ByteSpan> index;   // the moov box with its head
    std::optional<ByteSpan> media;   // the content of the first mdat box that has any
    std::optional<ByteSpan> missing; // what must be held to know more; absent when all is known,
                                     // or it is no such file

    bool operator==(const Mp4Layout &) const = default;

    /// Asks `held` for the heads of at most 64 boxes, 16 bytes each. Spans lie within the file.
    static Mp4Layout of(qint64 fileSize, const HeldBytes &held);
};

} // namespace tavelo
