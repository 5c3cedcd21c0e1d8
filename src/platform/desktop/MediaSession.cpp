// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/desktop/MediaSession.h"

#include "platform/desktop/MprisPlayer.h"
#include "platform/desktop/MprisProgram.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDeadlineTimer>

#include <cmath>

namespace tavelo {

namespace {

const QString objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const QString playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString serviceName = QStringLiteral("org.mpris.MediaPlayer2.tavelo");

QVariant trackId(int film)
{
    return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/tavelo/film/%1").arg(film)));
}

QVariantMap metadataOf(const MediaSessionState &state, int film)
{
    if (state.title.isEmpty())
        return {};
    QVariantMap metadata{{QStringLiteral("mpris:trackid"), trackId(film)},
                         {QStringLiteral("xesam:title"), state.title}};
    if (state.duration > 0)
        metadata.insert(QStringLiteral("mpris:length"), qlonglong(state.duration * 1e6));
    if (!state.poster.isEmpty())
        metadata.insert(QStringLiteral("mpris:artUrl"), state.poster.toString(QUrl::FullyEncoded));
    return metadata;
}

QVariantMap propertiesOf(const MediaSessionState &state, int film)
{
    const bool loaded = !state.title.isEmpty();
    const QString status = !loaded         ? QStringLiteral("Stopped")
                           : state.playing ? QStringLiteral("Playing")
                                           : QStringLiteral("Paused");
    return {{QStringLiteral("PlaybackStatus"), status},
            {QStringLiteral("Metadata"), metadataOf(state, film)},
            {QStringLiteral("Rate"), state.rate},
            {QStringLiteral("Volume"), state.volume},
            {QStringLiteral("CanPlay"), loaded},
            {QStringLiteral("CanPause"), loaded},
            {QStringLiteral("CanSeek"), loaded && state.duration > 0}};
}

qint64 now()
{
    return QDeadlineTimer::current().deadline();
}

} // namespace

MediaSession::MediaSession(QObject *parent)
    : QObject(parent)
    , m_bus(QString())
    , m_properties(propertiesOf({}, 0))
{
    new MprisProgram(*this);
    new MprisPlayer(*this);
}

bool MediaSession::start(const QDBusConnection &bus)
{
    m_bus = bus;
    const QString other =
        serviceName + QStringLiteral(".instance%1").arg(QCoreApplication::applicationPid());
    return m_bus.registerObject(objectPath, this) &&
           (m_bus.registerService(serviceName) || m_bus.registerService(other));
}

void MediaSession::publish(const MediaSessionState &state)
{
    if (state == m_state)
        return;
    if (state.title != m_state.title)
        ++m_film;
    m_state = state;
    QVariantMap changed;
    const QVariantMap properties = propertiesOf(state, m_film);
    for (auto each = properties.begin(); each != properties.end(); ++each) {
        if (m_properties.value(each.key()) != each.value())
            changed.insert(each.key(), each.value());
    }
    m_properties = properties;
    if (changed.isEmpty())
        return;
    auto message =
        QDBusMessage::createSignal(objectPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    message << playerInterface << changed << QStringList();
    m_bus.send(message);
}

void MediaSession::setPosition(double seconds)
{
    constexpr double slack = 1; // seconds: positions come every half second
    const qint64 moment = now();
    const qint64 passed = moment - std::exchange(m_positionSince, moment);
    const double before = std::exchange(m_position, seconds);
    const double played = m_state.playing ? double(passed) / 1000 * m_state.rate : 0;
    // A film that waits for data falls behind, which is no jump.
    if (seconds < before - slack || seconds > before + played + slack)
        tellJump();
}

void MediaSession::tellJump()
{
    auto message =
        QDBusMessage::createSignal(objectPath, playerInterface, QStringLiteral("Seeked"));
    message << qlonglong(m_position * 1e6);
    m_bus.send(message);
}

} // namespace tavelo
