// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

namespace tavelo {

/// What the heads of a film (mvhd) and of a track's media (mdhd) tell alike.
struct Mp4Clock
{
    quint32 scale = 1; // ticks a second, never 0
    qint64 length = 0; // in ticks; 0: unknown

    double seconds() const { return static_cast<double>(length) / scale; }

    /// Absent when damaged.
    static std::optional<Mp4Clock> read(QByteArrayView content)
    {
        // Two dates lie in front; they and the length are wider in version 1.
        const bool isWide = !content.isEmpty() && content[0] == 1;
        const qsizetype at = isWide ? 20 : 12;
        if (content.size() < at + (isWide ? 12 : 8))
            return {};
        Mp4Clock clock{qFromBigEndian<quint32>(content.data() + at), 0};
        if (clock.scale == 0)
            return {};
        const qint64 length = isWide ? qFromBigEndian<qint64>(content.data() + at + 4)
                                     : qFromBigEndian<qint32>(content.data() + at + 4);
        clock.length = std::max<qint64>(length, 0); // all bits set: not told
        return clock;
    }
};

} // namespace tavelo
