// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"

#include <mpv/client.h>

/// What libmpv says, in our terms.
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

/// False, NaN and empty while a property has no value.
bool flag(const mpv_event_property &property);
double number(const mpv_event_property &property);
QByteArray text(const mpv_event_property &property);

/// Why a film did not play, for the user.
QString errorText(int error);

} // namespace tavelo::MpvNodes
