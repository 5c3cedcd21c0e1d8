// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/mpv/MpvPlayer.h"

#include "platform/mpv/HttpStream.h"
#include "platform/mpv/MpvRenderer.h"
#include "platform/mpv/StreamProtocol.h"

#include <mpv/client.h>

#include <chrono>
#include <cmath>

namespace tavelo {

using namespace std::chrono_literals;

namespace {

constexpr auto tickInterval = 500ms;
/// How long a film waits for somebody to draw it; then it plays unseen.
constexpr auto screenLimit = 1s;
/// A picture that stands still for so long, without a byte from the server, has failed.
constexpr qint64 starvationLimit = 8000; // milliseconds

// What an asynchronous reply belongs to: the kind above, a running number below.
constexpr std::uint64_t kindMask = 0xffULL << 56;
constexpr std::uint64_t loadKind = 1ULL << 56;
constexpr std::uint64_t seekKind = 2ULL << 56;
constexpr std::uint64_t stopKind = 3ULL << 56;
constexpr std::uint64_t readyKind = 4ULL << 56;

} // namespace

MpvPlayer::MpvPlayer(std::shared_ptr<MpvCore> core)
    : m_core(std::move(core))
    , m_renderer(std::make_shared<MpvRenderer>(m_core))
    , m_ticker(this)
{
    m_ticker.setInterval(tickInterval);
    connect(&m_ticker, &QTimer::timeout, this, &MpvPlayer::tick);
    m_screenWait.setSingleShot(true);
    m_screenWait.setInterval(screenLimit);
    connect(&m_screenWait, &QTimer::timeout, this, &MpvPlayer::open);
    observe();
    mpv_set_wakeup_callback(
        m_core->handle(),
        [](void *data) {
            auto *self = static_cast<MpvPlayer *>(data);
            if (!self->m_drainQueued.exchange(true))
                QMetaObject::invokeMethod(self, &MpvPlayer::drain, Qt::QueuedConnection);
        },
        this);
}

MpvPlayer::~MpvPlayer()
{
    mpv_set_wakeup_callback(m_core->handle(), nullptr, nullptr);
    // The core may outlive us in the renderer's hands; the film must not.
    m_core->command(stopKind, {"stop"});
    if (m_stream)
        m_stream->cancel();
}

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

void MpvPlayer::load(const QUrl &url, double startAt)
{
    resetItem();
    m_time = m_startAt = startAt;
    m_hasItem = true;
    m_isFile = url.isLocalFile();
    const bool http =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!http && !m_isFile) {
        m_core->command(stopKind, {"stop"});
        // Later, as every other failure: the caller is not through with its own load.
        QMetaObject::invokeMethod(
            this,
            [this, serial = m_loadSerial] {
                if (serial == m_loadSerial)
                    failItem(tr("This kind of address can't be played."));
                publish();
            },
            Qt::QueuedConnection);
        return publish();
    }
    m_address = url.toLocalFile().toUtf8();
    if (http) {
        m_stream = HttpStream::open(url);
        m_address = StreamProtocol::addressOf(m_stream);
    }
    if (m_hasScreen)
        open();
    else
        m_screenWait.start();
    publish();
}

/// Not before there is a screen: without a picture libmpv starts the sound alone, and goes to where
/// it was told only roughly.
void MpvPlayer::open()
{
    m_screenWait.stop();
    m_core->set("pause", true);
    m_core->set("start",
                m_startAt > 0 ? QByteArray::number(m_startAt, 'f', 6) : QByteArray("none"));
    m_core->set("cache", QByteArray(m_isFile ? "auto" : "yes"));
    m_core->command(loadKind | m_loadSerial, {"loadfile", m_address, "replace"});
    m_ticker.start();
}

void MpvPlayer::videoChosen(bool wanted)
{
    m_hasScreen = wanted;
    if (wanted && m_screenWait.isActive())
        open();
}

void MpvPlayer::clear()
{
    resetItem();
    m_core->command(stopKind, {"stop"});
    publish();
}

void MpvPlayer::resetItem()
{
    ++m_loadSerial;
    m_renderer->setBlank(true); // libmpv keeps showing the former film
    m_seek.end(false);
    if (m_stream)
        m_stream->cancel();
    m_stream.reset();
    m_ticker.stop();
    m_screenWait.stop();
    m_entry = -1;
    m_entryStarted = m_hasItem = m_atEnd = m_tickDue = m_endDirty = false;
    m_idle = m_seekable = true;
    m_time = 0;
    m_duration = qQNaN();
    m_ranges.clear();
    m_statusDirty = m_statusDirty || m_status != ItemStatus::Unknown;
    m_status = ItemStatus::Unknown;
    m_error.clear();
    m_audioDirty = m_audioDirty || !m_audio.tracks.isEmpty();
    m_audio = {};
}

void MpvPlayer::play()
{
    m_wantsToPlay = true;
    setRate(m_defaultRate);
    if (m_atEnd)
        seek(0, {});
    applyPause();
    publish();
}

void MpvPlayer::pause()
{
    m_wantsToPlay = false;
    applyPause();
    publish();
}

/// libmpv is held until the item is ready and whoever waits for that has had its say.
void MpvPlayer::applyPause()
{
    if (m_status == ItemStatus::Ready)
        m_core->set("pause", !m_wantsToPlay);
}

void MpvPlayer::setVolume(float volume)
{
    // libmpv's scale is cubic, as ours is meant to be heard.
    m_core->set("volume", static_cast<double>(volume) * 100);
}

void MpvPlayer::setVideoGravity(VideoGravity gravity)
{
    m_core->set("keepaspect", gravity != VideoGravity::Resize);
    m_core->set("panscan", gravity == VideoGravity::ResizeAspectFill ? 1.0 : 0.0);
}

void MpvPlayer::selectAudioTrack(qint64 id)
{
    m_core->set("aid", QByteArray::number(id));
}

std::shared_ptr<VideoRenderer> MpvPlayer::renderer()
{
    return m_renderer;
}

void MpvPlayer::seek(double seconds, SeekDone done)
{
    const std::uint64_t number = m_seek.begin(std::move(done));
    if (m_status != ItemStatus::Ready || !m_seekable)
        return m_seek.end(false);
    m_time = seconds;
    m_atEnd = false;
    m_core->command(seekKind | number,
                    {"seek", QByteArray::number(seconds, 'f', 6), "absolute+exact"});
    publish();
}

QList<TimeRange> MpvPlayer::loadedRanges() const
{
    if (m_isFile && m_status == ItemStatus::Ready && std::isfinite(m_duration))
        return {{0, m_duration}};
    return m_ranges;
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
    const std::uint64_t number = event.reply_userdata & ~kindMask;
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        if ((event.reply_userdata & kindMask) == loadKind)
            loadReplied(number, event.error, *static_cast<mpv_event_command *>(event.data));
        else if ((event.reply_userdata & kindMask) == seekKind)
            m_seek.replied(number, event.error);
        break;
    case MPV_EVENT_START_FILE:
        m_entryStarted =
            static_cast<mpv_event_start_file *>(event.data)->playlist_entry_id == m_entry;
        break;
    case MPV_EVENT_FILE_LOADED:
        // Ready once the length is known too, which a live stream answers with none.
        if (m_entryStarted)
            mpv_get_property_async(m_core->handle(), readyKind | m_loadSerial, "duration",
                                   MPV_FORMAT_DOUBLE);
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (number == m_loadSerial && m_entryStarted)
            fileLoaded(MpvNodes::number(*static_cast<mpv_event_property *>(event.data)));
        break;
    case MPV_EVENT_END_FILE:
        fileEnded(*static_cast<mpv_event_end_file *>(event.data));
        break;
    case MPV_EVENT_SEEK:
        m_seek.started();
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        m_tickDue = m_seek.restarted() || m_tickDue;
        if (m_entryStarted)
            m_renderer->setBlank(false);
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        propertyChanged(static_cast<Property>(event.reply_userdata),
                        *static_cast<mpv_event_property *>(event.data));
        break;
    default:
        break;
    }
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
        if (const double time = MpvNodes::number(property);
            !m_seek.isPending() && std::isfinite(time))
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
}

void MpvPlayer::fileLoaded(double duration)
{
    if (m_status != ItemStatus::Unknown)
        return;
    m_duration = duration;
    m_status = ItemStatus::Ready;
    m_statusDirty = true;
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

/// libmpv takes a broken stream for the film's end; our stream knows better.
void MpvPlayer::reachedEnd()
{
    if (m_stream && !m_stream->error().isEmpty())
        return failItem({});
    m_seek.end(false);
    m_atEnd = true;
    m_wantsToPlay = false;
    m_endDirty = true;
    m_tickDue = true;
    applyPause();
}

void MpvPlayer::failItem(const QString &text)
{
    if (m_status == ItemStatus::Failed || !m_hasItem)
        return;
    const QString streamText = m_stream ? m_stream->error() : QString();
    m_status = ItemStatus::Failed;
    m_error = streamText.isEmpty() ? text : streamText;
    m_statusDirty = true;
    m_ticker.stop();
    m_seek.end(false);
    m_core->set("pause", true);
}

TimeControlStatus MpvPlayer::computeTimeControl() const
{
    if (!m_hasItem || !m_wantsToPlay || m_status == ItemStatus::Failed)
        return TimeControlStatus::Paused;
    if (m_status != ItemStatus::Ready || m_idle || m_seek.isPending())
        return TimeControlStatus::Waiting;
    return TimeControlStatus::Playing;
}

void MpvPlayer::publish()
{
    if (std::exchange(m_statusDirty, false)) {
        Q_EMIT itemStatusChanged();
        applyPause();
    }
    if (std::exchange(m_audioDirty, false))
        Q_EMIT audioTracksChanged();
    if (const auto status = computeTimeControl(); status != m_timeControl) {
        m_timeControl = status;
        Q_EMIT timeControlStatusChanged();
    }
    if (m_tickDue && !m_seek.isPending()) {
        m_tickDue = false;
        Q_EMIT timeTicked(m_time);
    }
    if (std::exchange(m_endDirty, false))
        Q_EMIT playedToEnd();
}

void MpvPlayer::tick()
{
    if (m_stream && m_timeControl == TimeControlStatus::Waiting &&
        m_stream->starvedFor() > starvationLimit)
        m_stream->fail(tr("The server stopped answering."));
    m_tickDue = m_status == ItemStatus::Ready;
    publish();
}

} // namespace tavelo
