// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/MprisPlayer.h"

#include "platform/desktop/MediaSession.h"

#include <algorithm>
#include <cmath>

namespace tavelo {

MprisPlayer::MprisPlayer(MediaSession &session)
    : QDBusAbstractAdaptor(&session)
    , m_session(session)
{}

QVariant MprisPlayer::value(const char *name) const
{
    return m_session.properties().value(QLatin1String(name));
}

QString MprisPlayer::playbackStatus() const
{
    return value("PlaybackStatus").toString();
}

double MprisPlayer::rate() const
{
    return value("Rate").toDouble();
}

void MprisPlayer::setRate(double rate)
{
    if (rate == 0)
        return Pause();
    if (std::isfinite(rate))
        Q_EMIT m_session.rateAsked(std::clamp(rate, minimumRate(), maximumRate()));
}

QVariantMap MprisPlayer::metadata() const
{
    return value("Metadata").toMap();
}

double MprisPlayer::volume() const
{
    return value("Volume").toDouble();
}

void MprisPlayer::setVolume(double volume)
{
    if (std::isfinite(volume))
        Q_EMIT m_session.volumeAsked(std::clamp(volume, 0.0, 1.0));
}

qlonglong MprisPlayer::position() const
{
    return qlonglong(m_session.position() * 1e6);
}

bool MprisPlayer::canPlay() const
{
    return value("CanPlay").toBool();
}

bool MprisPlayer::canSeek() const
{
    return value("CanSeek").toBool();
}

void MprisPlayer::Pause()
{
    Q_EMIT m_session.pauseAsked();
}

void MprisPlayer::PlayPause()
{
    Q_EMIT m_session.toggleAsked();
}

void MprisPlayer::Stop()
{
    Q_EMIT m_session.stopAsked();
}

void MprisPlayer::Play()
{
    Q_EMIT m_session.playAsked();
}

void MprisPlayer::Seek(qlonglong Offset)
{
    if (canSeek())
        Q_EMIT m_session.seekAsked(std::max(0.0, m_session.position() + double(Offset) / 1e6));
}

void MprisPlayer::SetPosition(const QDBusObjectPath &TrackId, qlonglong Position)
{
    const QVariant current = metadata().value(QStringLiteral("mpris:trackid"));
    const double seconds = double(Position) / 1e6;
    if (canSeek() && current.value<QDBusObjectPath>() == TrackId && seconds >= 0 &&
        seconds <= m_session.duration())
        Q_EMIT m_session.seekAsked(seconds);
}

} // namespace tavelo
