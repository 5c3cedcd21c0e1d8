// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"
#include "playback/AspectMode.h"

#include <optional>

namespace tavelo {

/// The one player of the program, as its screens see it. Every field's signal follows every
/// assignment, also of an equal value. Main thread only.
class VideoPlayerManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(bool isBuffering READ isBuffering NOTIFY isBufferingChanged)
    Q_PROPERTY(double currentTime READ currentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(double bufferedTo READ bufferedTo NOTIFY bufferedToChanged)
    Q_PROPERTY(QString error READ errorText NOTIFY errorChanged)
    Q_PROPERTY(bool goesOnTrying READ goesOnTrying NOTIFY errorChanged)
    Q_PROPERTY(QString trouble READ trouble NOTIFY troubleChanged)
    Q_PROPERTY(float rate READ rate WRITE setRate NOTIFY rateChanged)
    Q_PROPERTY(QString aspect READ aspectName WRITE setAspectName NOTIFY aspectChanged)
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool isMuted READ isMuted WRITE setMuted NOTIFY isMutedChanged)
    Q_PROPERTY(QList<tavelo::AudioTrack> audioOptions READ audioOptions NOTIFY audioOptionsChanged)
    Q_PROPERTY(qint64 selectedAudio READ selectedAudioId NOTIFY selectedAudioChanged)

public:
    /// Makes the media engine; null when there is none to be had.
    using EngineFactory = std::function<std::unique_ptr<MediaPlayer>()>;

    /// The engine is made for the first film, not before.
    explicit VideoPlayerManager(EngineFactory makeEngine, QObject *parent = nullptr);
    ~VideoPlayerManager() override;

    /// Null before the first load.
    MediaPlayer *player() const { return m_player.get(); }

    bool isPlaying() const { return m_isPlaying; }     // playing or waiting to play
    bool isBuffering() const { return m_isBuffering; } // waiting for data
    /// In seconds: what the viewer saw last, or where they asked to be, whatever else the engine
    /// tells.
    double currentTime() const { return m_currentTime; }
    double duration() const { return m_duration; }     // seconds, 0 while unknown
    double bufferedTo() const { return m_bufferedTo; } // end of the last loaded range, seconds
    const std::optional<QString> &error() const { return m_error; }
    QString errorText() const { return m_error.value_or(QString()); }
    /// Behind the error: the film goes on by itself once its server is back.
    bool goesOnTrying() const { return m_error && m_player && m_player->goesOnTrying(); }
    /// What the viewer waits for while the network brings nothing; empty: nothing.
    QString trouble() const { return m_player ? m_player->trouble() : QString(); }
    float rate() const { return m_rate; }
    AspectMode aspect() const { return m_aspect; }
    QString aspectName() const { return rawValue(m_aspect); }
    float volume() const { return m_volume; } // 0 to 1
    bool isMuted() const { return m_isMuted; }
    QList<AudioTrack> audioOptions() const { return m_audioOptions; }
    std::optional<AudioTrack> selectedAudio() const;
    qint64 selectedAudioId() const { return m_selectedAudio; } // -1: none
    const std::optional<QUrl> &currentURL() const { return m_currentURL; }

    void setAspect(AspectMode aspect);
    void setAspectName(const QString &name); // an unknown name changes nothing
    void setVolume(float volume);
    void setMuted(bool muted);
    void setOnFinished(std::function<void()> callback) { m_onFinished = std::move(callback); }

    /// Starts a new item; a start of up to one second counts as the beginning.
    void load(const QUrl &url, double startAt);
    /// Loads the current item again, from exactly where it stands and with the chosen audio track.
    Q_INVOKABLE void retry();
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void seekBy(double seconds) { seek(m_currentTime + seconds); }
    Q_INVOKABLE void setRate(float rate);
    /// The user's choice, kept between 0 and 1: unless it is 0, it is heard.
    Q_INVOKABLE void chooseVolume(float volume);
    Q_INVOKABLE void adjustVolume(float step) { chooseVolume(m_volume + step); }
    Q_INVOKABLE void selectAudio(qint64 id);
    void stop();

Q_SIGNALS:
    void playerChanged();
    void isPlayingChanged();
    void isBufferingChanged();
    void currentTimeChanged(double seconds);
    void durationChanged();
    void bufferedToChanged();
    void errorChanged();
    void troubleChanged();
    void rateChanged();
    void aspectChanged();
    void volumeChanged();
    void isMutedChanged();
    void audioOptionsChanged();
    void selectedAudioChanged();

private:
    bool ensurePlayer();
    void open(double startAt);
    void setIsPlaying(bool playing);
    void setIsBuffering(bool buffering);
    void setCurrentTime(double seconds);
    void setDuration(double seconds);
    void setBufferedTo(double seconds);
    void setError(std::optional<QString> text);
    void setAudio(const QList<AudioTrack> &options, qint64 selected);
    void itemStatusChanged();
    void itemReady();
    void forgetError();
    void readAudio();
    void timeTicked(double seconds);
    void timeControlChanged();

    EngineFactory m_makeEngine;
    std::unique_ptr<MediaPlayer> m_player;
    bool m_isPlaying = false;
    bool m_isBuffering = false;
    double m_currentTime = 0;
    double m_duration = 0;
    double m_bufferedTo = 0;
    std::optional<QString> m_error;
    float m_rate = 1;
    AspectMode m_aspect = AspectMode::Fit;
    float m_volume = 1;
    bool m_isMuted = false;
    QList<AudioTrack> m_audioOptions;
    qint64 m_selectedAudio = -1;
    std::optional<qint64> m_chosenAudio; // by the user, for the current item
    std::optional<QUrl> m_currentURL;
    std::function<void()> m_onFinished;
};

} // namespace tavelo
