// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/VideoPlayerManager.h"

#include <algorithm>
#include <cmath>

namespace tavelo {

VideoPlayerManager::VideoPlayerManager(EngineFactory makeEngine, QObject *parent)
    : QObject(parent)
    , m_makeEngine(std::move(makeEngine))
{}

VideoPlayerManager::~VideoPlayerManager()
{
    if (m_player)
        m_player->disconnect(this);
}

bool VideoPlayerManager::ensurePlayer()
{
    if (m_player)
        return true;
    m_player = m_makeEngine();
    if (!m_player)
        return false;
    MediaPlayer *player = m_player.get();
    connect(player, &MediaPlayer::timeTicked, this, &VideoPlayerManager::timeTicked);
    connect(player, &MediaPlayer::itemStatusChanged, this, &VideoPlayerManager::itemStatusChanged);
    connect(player, &MediaPlayer::timeControlStatusChanged, this,
            &VideoPlayerManager::timeControlChanged);
    connect(player, &MediaPlayer::troubleChanged, this, &VideoPlayerManager::troubleChanged);
    connect(player, &MediaPlayer::audioTracksChanged, this, &VideoPlayerManager::readAudio);
    connect(player, &MediaPlayer::playedToEnd, this, [this] {
        if (m_onFinished)
            m_onFinished();
    });
    player->setVolume(m_volume);
    player->setMuted(m_isMuted);
    timeControlChanged();
    Q_EMIT playerChanged();
    return true;
}

void VideoPlayerManager::load(const QUrl &url, double startAt)
{
    m_currentURL = url;
    m_chosenAudio.reset();
    setCurrentTime(startAt);
    open(startAt > 1.0 ? startAt : 0);
}

void VideoPlayerManager::retry()
{
    if (m_currentURL)
        open(m_currentTime);
}

void VideoPlayerManager::open(double startAt)
{
    setError({});
    setDuration(0);
    setBufferedTo(0);
    setAudio({}, -1);
    if (!ensurePlayer())
        return setError(tr("The media engine could not be started."));
    m_player->load(*m_currentURL, startAt);
    if (m_chosenAudio)
        m_player->selectAudioTrack(*m_chosenAudio);
    m_player->setDefaultRate(m_rate);
    m_player->play();
}

void VideoPlayerManager::itemStatusChanged()
{
    switch (m_player->itemStatus()) {
    case ItemStatus::Ready:
        itemReady();
        break;
    case ItemStatus::Failed: {
        const QString text = m_player->itemError();
        setError(text.isEmpty() ? tr("Playback failed") : text);
        setIsBuffering(false);
        break;
    }
    case ItemStatus::Unknown:
        forgetError();
        break;
    }
}

/// The film's server is back.
void VideoPlayerManager::forgetError()
{
    if (m_error)
        setError({});
}

void VideoPlayerManager::itemReady()
{
    forgetError();
    if (const double duration = m_player->duration(); std::isfinite(duration))
        setDuration(duration);
    readAudio();
}

void VideoPlayerManager::readAudio()
{
    if (m_player->itemStatus() == ItemStatus::Ready && !m_player->audioTracks().isEmpty())
        setAudio(m_player->audioTracks(), m_player->selectedAudioTrack());
}

void VideoPlayerManager::timeTicked(double seconds)
{
    // A time from before the first frame, on the way of a seek or after a failure is nobody's
    // place.
    if (std::isfinite(seconds) && m_player->itemStatus() == ItemStatus::Ready &&
        m_player->hasArrived())
        setCurrentTime(seconds);
    if (const auto ranges = m_player->loadedRanges(); !ranges.isEmpty())
        setBufferedTo(ranges.last().end);
}

void VideoPlayerManager::timeControlChanged()
{
    const TimeControlStatus status = m_player->timeControlStatus();
    setIsPlaying(status != TimeControlStatus::Paused);
    setIsBuffering(status == TimeControlStatus::Waiting);
}

void VideoPlayerManager::toggle()
{
    if (!m_player)
        return;
    if (m_isPlaying)
        return m_player->pause();
    m_player->setDefaultRate(m_rate);
    m_player->play();
}

void VideoPlayerManager::seek(double seconds)
{
    double target = m_duration > 0 ? std::min(seconds, m_duration) : seconds;
    target = std::max(target, 0.0);
    setCurrentTime(target);
    if (m_player)
        m_player->seek(target);
}

void VideoPlayerManager::setRate(float rate)
{
    m_rate = rate;
    Q_EMIT rateChanged();
    if (!m_player)
        return;
    m_player->setDefaultRate(rate);
    if (m_isPlaying)
        m_player->setRate(rate);
}

void VideoPlayerManager::chooseVolume(float volume)
{
    setVolume(std::clamp(volume, 0.0F, 1.0F));
    if (m_volume > 0)
        setMuted(false);
}

void VideoPlayerManager::selectAudio(qint64 id)
{
    const bool known =
        std::ranges::find(m_audioOptions, id, &AudioTrack::id) != m_audioOptions.end();
    if (!known || !m_player || !m_player->hasItem())
        return;
    m_player->selectAudioTrack(id);
    m_chosenAudio = m_selectedAudio = id;
    Q_EMIT selectedAudioChanged();
}

void VideoPlayerManager::stop()
{
    if (m_player) {
        m_player->pause();
        m_player->clear();
    }
    m_currentURL.reset();
    setIsPlaying(false);
    setIsBuffering(false);
    setCurrentTime(0);
    setDuration(0);
}

std::optional<AudioTrack> VideoPlayerManager::selectedAudio() const
{
    const auto found = std::ranges::find(m_audioOptions, m_selectedAudio, &AudioTrack::id);
    return found == m_audioOptions.end() ? std::optional<AudioTrack>() : *found;
}

void VideoPlayerManager::setAspect(AspectMode aspect)
{
    m_aspect = aspect;
    Q_EMIT aspectChanged();
}

void VideoPlayerManager::setAspectName(const QString &name)
{
    if (const auto aspect = aspectModeFrom(name))
        setAspect(*aspect);
}

void VideoPlayerManager::setVolume(float volume)
{
    m_volume = volume;
    if (m_player)
        m_player->setVolume(volume);
    Q_EMIT volumeChanged();
}

void VideoPlayerManager::setMuted(bool muted)
{
    m_isMuted = muted;
    if (m_player)
        m_player->setMuted(muted);
    Q_EMIT isMutedChanged();
}

void VideoPlayerManager::setIsPlaying(bool playing)
{
    m_isPlaying = playing;
    Q_EMIT isPlayingChanged();
}

void VideoPlayerManager::setIsBuffering(bool buffering)
{
    m_isBuffering = buffering;
    Q_EMIT isBufferingChanged();
}

void VideoPlayerManager::setCurrentTime(double seconds)
{
    m_currentTime = seconds;
    Q_EMIT currentTimeChanged(seconds);
}

void VideoPlayerManager::setDuration(double seconds)
{
    m_duration = seconds;
    Q_EMIT durationChanged();
}

void VideoPlayerManager::setBufferedTo(double seconds)
{
    m_bufferedTo = seconds;
    Q_EMIT bufferedToChanged();
}

void VideoPlayerManager::setError(std::optional<QString> text)
{
    m_error = std::move(text);
    Q_EMIT errorChanged();
}

void VideoPlayerManager::setAudio(const QList<AudioTrack> &options, qint64 selected)
{
    m_audioOptions = options;
    Q_EMIT audioOptionsChanged();
    m_selectedAudio = selected;
    Q_EMIT selectedAudioChanged();
}

} // namespace tavelo
