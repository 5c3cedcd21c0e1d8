// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/MediaPlayer.h"

#include <mpv/client.h>

namespace tavelo::MpvNodes {

struct AudioTracks
{
    QList<AudioTrack> tracks;
    qint64 selected = -1;

    bool operator==(const AudioTracks &) const = default;
};

/// From the property `track-list`.
AudioTracks audioTracks(const mpv_node &trackList);

/// From the property `demuxer-cache-state`; the range being filled comes last.
QList<TimeRange> loadedRanges(const mpv_node &cacheState);

} // namespace tavelo::MpvNodes
