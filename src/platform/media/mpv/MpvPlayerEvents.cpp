// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/FilmSource.h"
#include "platform/media/mpv/MpvLog.h"
#include "platform/media/mpv/MpvPlayer.h"
#include "platform/media/mpv/MpvRenderer.h"
#include "platform/media/mpv/MpvReply.h"

#include <mpv/client.h>

#include <algorithm>
#include <cmath>

// What libmpv tells.

namespace tavelo {

void MpvPlayer::observe()
{
    const auto watch = [this](Property id, const char *name, mpv_format format) {
        mpv_observe_property(m_core->handle(), static_cast<std::uint64_t>(id), name, format);
    };
    using enum Property;
    watch(Time, "time-pos", MPV_FORMAT_DOUBLE);
    watch(Duration, "duration", MPV_FORMAT_DOUBLE);
    watch(CoreIdle, "core-idle", MPV_FORMAT_FLAG);
    watch(EndReached, "eof-reached", MPV_FORMAT_FLAG);
    watch(Seekable, "seekable", MPV_FORMAT_FLAG);
    watch(Cache, "demuxer-cache-state", MPV_FORMAT_NODE);
    watch(Tracks, "track-list", MPV_FORMAT_NODE);
    watch(VideoChoice, "options/vid", MPV_FORMAT_STRING);
}

void MpvPlayer::drain()
{
    m_drainQueued = false;
    for (;;) {
        const mpv_event *event = mpv_wait_event(m_core->handle(), 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        handle(*event);
    }
    publish();
}

void MpvPlayer::handle(const mpv_event &event)
{
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        commandReplied(event);
        break;
    case MPV_EVENT_START_FILE:
        m_entryStarted =
            static_cast<mpv_event_start_file *>(event.data)->playlist_entry_id == m_entry;
        break;
    case MPV_EVENT_FILE_LOADED:
        // Ready once the length is known too, which a live stream answers with none.
        if (m_entryStarted)
            mpv_get_property_async(m_core->handle(), MpvReply::readyKind | m_loadSerial, "duration",
                                   MPV_FORMAT_DOUBLE);
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        propertyReplied(event);
        break;
    case MPV_EVENT_END_FILE:
        fileEnded(*static_cast<mpv_event_end_file *>(event.data));
        break;
    case MPV_EVENT_SEEK:
        m_seek.started();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (m_entryStarted)
            restarted();
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        propertyChanged(static_cast<Property>(event.reply_userdata),
                        *static_cast<mpv_event_property *>(event.data));
        break;
    case MPV_EVENT_LOG_MESSAGE:
        MpvLog::write(*static_cast<mpv_event_log_message *>(event.data));
        break;
    default:
        break;
    }
}

void MpvPlayer::commandReplied(const mpv_event &event)
{
    const std::uint64_t kind = event.reply_userdata & MpvReply::kindMask;
    const std::uint64_t number = event.reply_userdata & ~MpvReply::kindMask;
    if (kind == MpvReply::loadKind)
        loadReplied(number, event.error, *static_cast<mpv_event_command *>(event.data));
    else if (kind == MpvReply::seekKind && !m_seek.replied(number, event.error))
        m_target.reset();
}

void MpvPlayer::propertyReplied(const mpv_event &event)
{
    if ((event.reply_userdata & ~MpvReply::kindMask) != m_loadSerial || !m_entryStarted)
        return;
    const auto &property = *static_cast<mpv_event_property *>(event.data);
    if ((event.reply_userdata & MpvReply::kindMask) == MpvReply::readyKind)
        return fileLoaded(MpvNodes::number(property));
    if (property.format != MPV_FORMAT_NODE || !m_target)
        return;
    const auto holdsTarget = [this](const TimeRange &range) {
        return range.start <= *m_target && *m_target <= range.end;
    };
    if (std::ranges::any_of(MpvNodes::loadedRanges(*static_cast<mpv_node *>(property.data)),
                            holdsTarget))
        arrive();
}

void MpvPlayer::loadReplied(std::uint64_t serial, int error, const mpv_event_command &result)
{
    if (serial != m_loadSerial)
        return;
    if (error < 0)
        return failItem(MpvNodes::errorText(error));
    const mpv_node &node = result.result;
    for (int i = 0; node.format == MPV_FORMAT_NODE_MAP && i < node.u.list->num; ++i) {
        if (qstrcmp(node.u.list->keys[i], "playlist_entry_id") == 0)
            m_entry = node.u.list->values[i].u.int64;
    }
}

void MpvPlayer::propertyChanged(Property id, const mpv_event_property &property)
{
    if (id == Property::CoreIdle)
        m_idle = MpvNodes::flag(property);
    else if (id == Property::VideoChoice)
        videoChosen(MpvNodes::text(property) != "no");
    if (!m_entryStarted)
        return; // of an item that is on its way out
    switch (id) {
    case Property::CoreIdle:
    case Property::VideoChoice:
        break;
    case Property::Time:
        if (const double time = MpvNodes::number(property); !m_target && std::isfinite(time))
            m_time = time;
        break;
    case Property::Duration:
        m_duration = MpvNodes::number(property);
        break;
    case Property::Seekable:
        m_seekable = MpvNodes::flag(property) || property.format == MPV_FORMAT_NONE;
        break;
    case Property::EndReached:
        if (const bool atEnd = MpvNodes::flag(property); atEnd && !m_atEnd)
            reachedEnd();
        else
            m_atEnd = atEnd;
        break;
    case Property::Cache:
        if (property.format == MPV_FORMAT_NODE)
            m_ranges = MpvNodes::loadedRanges(*static_cast<mpv_node *>(property.data));
        break;
    case Property::Tracks:
        if (property.format == MPV_FORMAT_NODE)
            tracksChanged(*static_cast<mpv_node *>(property.data));
        break;
    }
}

void MpvPlayer::tracksChanged(const mpv_node &trackList)
{
    auto audio = MpvNodes::audioTracks(trackList);
    m_audioDirty = m_audioDirty || audio != m_audio;
    m_audio = std::move(audio);
    const auto isWanted = [this](const AudioTrack &track) {
        return QByteArray::number(track.id) == m_aid;
    };
    if (m_aid != "auto" && !m_audio.tracks.isEmpty() &&
        std::ranges::none_of(m_audio.tracks, isWanted))
        m_core->set("aid", m_aid = "auto");
}

void MpvPlayer::videoChosen(bool wanted)
{
    m_hasScreen = wanted;
    if (wanted && m_screenWait.isActive())
        open();
}

void MpvPlayer::fileLoaded(double duration)
{
    if (m_lost)
        regainStream();
    if (m_status != ItemStatus::Unknown)
        return;
    m_duration = duration;
    m_status = ItemStatus::Ready;
    m_statusDirty = true;
    if (m_seek.isPending())
        sendSeek(); // it may have come too late to begin there
}

void MpvPlayer::fileEnded(const mpv_event_end_file &end)
{
    if (end.playlist_entry_id != m_entry || !m_hasItem)
        return;
    m_entryStarted = false;
    if (end.reason == MPV_END_FILE_REASON_ERROR)
        failItem(MpvNodes::errorText(end.error));
    else if (end.reason == MPV_END_FILE_REASON_EOF)
        reachedEnd();
}

/// Where libmpv goes on is where it was told to. When the stream broke on the way it may be
/// anywhere, even at the film's end; then only what had come before that can be trusted.
void MpvPlayer::restarted()
{
    if (!m_target || !m_seek.isPassedOn())
        return;
    if (!m_stream || m_stream->error().isEmpty())
        return arrive();
    mpv_get_property_async(m_core->handle(), MpvReply::placeKind | m_loadSerial,
                           "demuxer-cache-state", MPV_FORMAT_NODE);
}

void MpvPlayer::arrive()
{
    m_target.reset();
    m_renderer->setBlank(false);
    m_tickDue = true;
    m_seek.end(true);
}

/// libmpv takes a broken stream for the film's end; our stream knows better.
void MpvPlayer::reachedEnd()
{
    if (m_stream && !m_stream->error().isEmpty())
        return failItem({});
    m_target.reset();
    m_renderer->setBlank(false);
    m_seek.end(false);
    m_atEnd = true;
    m_wantsToPlay = false;
    m_endDirty = true;
    m_tickDue = true;
    applyPause();
}

void MpvPlayer::failItem(const QString &text)
{
    if (m_status == ItemStatus::Failed || m_failing || !m_hasItem)
        return;
    const QString streamText = m_stream ? m_stream->error() : QString();
    m_error = streamText.isEmpty() ? text : streamText;
    m_failing = true;
    m_tickDue = true;
    m_ticker.stop();
    m_seek.end(false);
    m_core->set("pause", true);
}

} // namespace tavelo
