// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvPlayer.h"

#include "platform/media/FilmSource.h"
#include "platform/media/mpv/MpvRenderer.h"
#include "platform/media/mpv/MpvReply.h"
#include "platform/media/mpv/StreamProtocol.h"

#include <mpv/client.h>

#include <chrono>
#include <cmath>

namespace tavelo {

using namespace std::chrono_literals;

namespace {

constexpr auto tickInterval = 500ms;
/// How long a film waits for somebody to draw it; then it plays unseen.
constexpr auto screenLimit = 1s;

} // namespace

MpvPlayer::MpvPlayer(std::shared_ptr<MpvCore> core, FilmSource &films)
    : m_core(std::move(core))
    , m_renderer(std::make_shared<MpvRenderer>(m_core))
    , m_films(films)
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
    if (m_stream)
        m_stream->cancel();
    m_core->command(MpvReply::stopKind, {"stop"});
}

void MpvPlayer::load(const QUrl &url, double startAt)
{
    resetItem();
    m_time = startAt;
    m_target = startAt;
    m_aid = "auto";
    m_hasItem = true;
    m_isFile = url.isLocalFile();
    const bool http =
        url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!http && !m_isFile) {
        m_core->command(MpvReply::stopKind, {"stop"});
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
    m_url = url;
    m_address = url.toLocalFile().toUtf8();
    if (http) {
        m_stream = m_films.open(url, startAt);
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
    sendStart();
    m_core->set("aid", m_aid);
    m_core->set("cache", QByteArray(m_isFile ? "auto" : "yes"));
    m_core->command(MpvReply::loadKind | m_loadSerial, {"loadfile", m_address, "replace"});
    m_ticker.start();
}

void MpvPlayer::clear()
{
    resetItem();
    m_core->command(MpvReply::stopKind, {"stop"});
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
    m_lost.reset();
    setTrouble({});
    m_ticker.stop();
    m_screenWait.stop();
    m_entry = -1;
    m_entryStarted = m_hasItem = m_atEnd = m_failing = m_tickDue = m_endDirty = false;
    m_idle = m_seekable = true;
    m_time = 0;
    m_target.reset();
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
    m_aid = QByteArray::number(id);
    if (!m_screenWait.isActive()) // or it would be heard in the former film
        m_core->set("aid", m_aid);
}

std::shared_ptr<VideoRenderer> MpvPlayer::renderer()
{
    return m_renderer;
}

void MpvPlayer::seek(double seconds, SeekDone done)
{
    m_seek.begin(std::move(done));
    if (!m_hasItem || m_status == ItemStatus::Failed || !m_seekable)
        return m_seek.end(false);
    m_time = seconds;
    m_target = seconds;
    m_atEnd = false;
    if (m_stream)
        m_stream->expect(seconds);
    if (m_status == ItemStatus::Ready)
        sendSeek();
    else if (!m_screenWait.isActive())
        sendStart();
    publish();
}

void MpvPlayer::sendStart()
{
    m_core->set("start", m_time > 0 ? QByteArray::number(m_time, 'f', 6) : QByteArray("none"));
}

void MpvPlayer::sendSeek()
{
    m_core->command(MpvReply::seekKind | m_seek.number(),
                    {"seek", QByteArray::number(m_time, 'f', 6), "absolute+exact"});
}

QList<TimeRange> MpvPlayer::loadedRanges() const
{
    if (m_isFile && m_status == ItemStatus::Ready && std::isfinite(m_duration))
        return {{0, m_duration}};
    return m_ranges;
}

TimeControlStatus MpvPlayer::computeTimeControl() const
{
    if (!m_hasItem || !m_wantsToPlay || m_status == ItemStatus::Failed)
        return TimeControlStatus::Paused;
    if (m_status != ItemStatus::Ready || m_idle || !hasArrived())
        return TimeControlStatus::Waiting;
    return TimeControlStatus::Playing;
}

void MpvPlayer::publish()
{
    if (m_failing)
        tellTime(); // nothing counts that a failed item tells
    if (std::exchange(m_failing, false)) {
        m_status = ItemStatus::Failed;
        m_statusDirty = true;
    }
    if (std::exchange(m_statusDirty, false)) {
        Q_EMIT itemStatusChanged();
        applyPause();
    }
    if (std::exchange(m_audioDirty, false))
        Q_EMIT audioTracksChanged();
    if (m_timeControl == TimeControlStatus::Playing && computeTimeControl() != m_timeControl)
        m_tickDue = true;
    tellTime();
    if (const auto status = computeTimeControl(); status != m_timeControl) {
        m_timeControl = status;
        Q_EMIT timeControlStatusChanged();
    }
    if (std::exchange(m_endDirty, false))
        Q_EMIT playedToEnd();
}

void MpvPlayer::tellTime()
{
    if (m_status != ItemStatus::Ready || !hasArrived() || !std::exchange(m_tickDue, false))
        return;
    if (m_stream)
        m_stream->shown(m_time);
    Q_EMIT timeTicked(m_time);
}

void MpvPlayer::tick()
{
    if (m_stream)
        followStream();
    m_tickDue = true;
    publish();
}

} // namespace tavelo
