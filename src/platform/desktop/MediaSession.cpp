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
    if (state.key.isEmpty())
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
    const bool loaded = !state.key.isEmpty();
    const QString status = !loaded         ? QStringLiteral("Stopped")
                           : state.playing ? QStringLiteral("Playing")
                                           : QStringLiteral("Paused");
    return {{QStringLiteral("PlaybackStatus"), status},
            {QStringLiteral("Metadata"), metadataOf(state, film)},
            {QStringLiteral("Rate"), state.rate},
            {QStringLiteral("Volume"), std::round(state.volume * 1e4) / 1e4},
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
    , m_player(new MprisPlayer(*this))
{
    new MprisProgram(*this);
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
    const double expected = expectedPosition();
    const bool another = state.key != m_state.key;
    m_state = state;
    if (another)
        ++m_film;
    // Who follows starts counting anew with each of these: a film from its start.
    m_told = another ? 0 : expected;
    m_toldAt = now();
    tellChanges();
}

void MediaSession::tellChanges()
{
    QVariantMap changed;
    const QVariantMap properties = propertiesOf(m_state, m_film);
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
    m_position = seconds;
    if (std::abs(seconds - expectedPosition()) <= slack)
        return;
    m_told = seconds;
    m_toldAt = now();
    Q_EMIT m_player->Seeked(qlonglong(seconds * 1e6));
}

double MediaSession::expectedPosition() const
{
    const double passed = double(now() - m_toldAt) / 1000;
    return m_state.playing ? m_told + passed * m_state.rate : m_told;
}

} // namespace tavelo
