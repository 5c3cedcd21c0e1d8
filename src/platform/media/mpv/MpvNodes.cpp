// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvNodes.h"

#include "platform/media/mpv/AudioTrackNames.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace tavelo::MpvNodes {

namespace {

std::span<const mpv_node> items(const mpv_node *list)
{
    if (!list || list->format != MPV_FORMAT_NODE_ARRAY)
        return {};
    return {list->u.list->values, static_cast<std::size_t>(list->u.list->num)};
}

const mpv_node *member(const mpv_node &map, const char *key)
{
    if (map.format != MPV_FORMAT_NODE_MAP)
        return nullptr;
    for (int i = 0; i < map.u.list->num; ++i) {
        if (std::strcmp(map.u.list->keys[i], key) == 0)
            return &map.u.list->values[i];
    }
    return nullptr;
}

QString text(const mpv_node &map, const char *key)
{
    const mpv_node *node = member(map, key);
    return node && node->format == MPV_FORMAT_STRING ? QString::fromUtf8(node->u.string)
                                                     : QString();
}

qint64 integer(const mpv_node &map, const char *key)
{
    const mpv_node *node = member(map, key);
    return node && node->format == MPV_FORMAT_INT64 ? node->u.int64 : 0;
}

double number(const mpv_node &map, const char *key)
{
    const mpv_node *node = member(map, key);
    return node && node->format == MPV_FORMAT_DOUBLE ? node->u.double_ : qQNaN();
}

bool flag(const mpv_node &map, const char *key)
{
    const mpv_node *node = member(map, key);
    return node && node->format == MPV_FORMAT_FLAG && node->u.flag != 0;
}

} // namespace

AudioTracks audioTracks(const mpv_node &trackList)
{
    AudioTracks result;
    QList<AudioTrackInfo> infos;
    for (const mpv_node &track : items(&trackList)) {
        if (text(track, "type") != QLatin1String("audio"))
            continue;
        infos.append({.title = text(track, "title"),
                      .language = text(track, "lang"),
                      .channels = static_cast<int>(integer(track, "demux-channel-count"))});
        result.tracks.append(AudioTrack{integer(track, "id"), QString()});
        if (flag(track, "selected"))
            result.selected = result.tracks.last().id;
    }
    const QList<QString> names = audioTrackNames(infos);
    for (qsizetype i = 0; i < names.size(); ++i)
        result.tracks[i].name = names[i];
    return result;
}

QList<TimeRange> loadedRanges(const mpv_node &cacheState)
{
    QList<TimeRange> ranges;
    for (const mpv_node &range : items(member(cacheState, "seekable-ranges")))
        ranges.append({number(range, "start"), number(range, "end")});
    // The range being filled ends where the demuxer has read to.
    const double filledTo = number(cacheState, "cache-end");
    const auto filling = std::ranges::find(ranges, filledTo, &TimeRange::end);
    if (filling != ranges.end())
        std::rotate(filling, filling + 1, ranges.end());
    return ranges;
}

bool flag(const mpv_event_property &property)
{
    return property.format == MPV_FORMAT_FLAG && *static_cast<int *>(property.data) != 0;
}

double number(const mpv_event_property &property)
{
    return property.format == MPV_FORMAT_DOUBLE ? *static_cast<double *>(property.data) : qQNaN();
}

QByteArray text(const mpv_event_property &property)
{
    return property.format == MPV_FORMAT_STRING ? *static_cast<const char **>(property.data) : "";
}

QString errorText(int error)
{
    switch (error) {
    case MPV_ERROR_UNKNOWN_FORMAT:
    case MPV_ERROR_NOTHING_TO_PLAY:
        return QObject::tr("This file is not a film that can be played.");
    case MPV_ERROR_LOADING_FAILED:
        return QObject::tr("The film could not be opened.");
    default:
        return QString::fromUtf8(mpv_error_string(error));
    }
}

} // namespace tavelo::MpvNodes
