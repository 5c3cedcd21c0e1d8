// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QUrl>
#include <QVariantMap>

namespace tavelo {

class MprisPlayer;

/// The film as the desktop's player controls show it.
struct MediaSessionState
{
    QString key; // another for another film; empty: nothing plays
    QString title;
    QUrl poster;         // empty: none
    double duration = 0; // seconds; 0: not known
    bool playing = false;
    double rate = 1;
    double volume = 1; // 0 to 1

    bool operator==(const MediaSessionState &) const = default;
};

/// The media keys and the desktop's player controls (MPRIS 2.2). It tells what plays and passes on
/// what is asked for; asking changes nothing by itself. Main thread only.
class MediaSession : public QObject
{
    Q_OBJECT

public:
    explicit MediaSession(QObject *parent = nullptr);

    /// Takes the program's name on the bus, or one of its own where that is taken. False without
    /// a bus; everything else then does nothing.
    bool start(const QDBusConnection &bus);

    void publish(const MediaSessionState &state);
    /// The film's position in seconds; told when it is not where those who follow expect it.
    void setPosition(double seconds);

    /// The player's properties by their names on the bus.
    const QVariantMap &properties() const { return m_properties; }
    double position() const { return m_position; }
    double duration() const { return m_state.duration; }

Q_SIGNALS:
    void raiseAsked();
    void quitAsked();
    void playAsked();
    void pauseAsked();
    void stopAsked();
    void toggleAsked();
    void seekAsked(double seconds); // from the film's start
    void volumeAsked(double volume);
    void rateAsked(double rate);

private:
    void tellChanges();
    double expectedPosition() const;

    QDBusConnection m_bus;
    MediaSessionState m_state;
    QVariantMap m_properties;
    MprisPlayer *m_player;
    int m_film = 0;
    double m_position = 0;
    double m_told = 0;   // the last position that others know
    qint64 m_toldAt = 0; // milliseconds of the steady clock
};

} // namespace tavelo
