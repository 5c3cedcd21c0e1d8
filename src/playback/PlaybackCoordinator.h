// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveFile.h"
#include "catalogue/MediaItem.h"
#include "playback/NowPlaying.h"
#include "playback/SubtitleManager.h"
#include "playback/VideoPlayerManager.h"
#include "storage/LibraryStore.h"
#include "transfers/SavedFile.h"

#include <QVariant>

#include <optional>

namespace tavelo {

/// Owns the player and its subtitles, knows what plays, and keeps in the history how far. The
/// order of its steps is relied on: the player's time is heard while it is being set.
class PlaybackCoordinator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(tavelo::VideoPlayerManager *player READ player CONSTANT)
    Q_PROPERTY(tavelo::SubtitleManager *subtitles READ subtitles CONSTANT)
    Q_PROPERTY(QVariant nowPlaying READ nowPlayingVariant NOTIFY nowPlayingChanged)

public:
    /// `library` must outlive this.
    PlaybackCoordinator(LibraryStore &library, VideoPlayerManager::EngineFactory makeEngine,
                        QObject *parent = nullptr);

    VideoPlayerManager *player() { return &m_player; }
    SubtitleManager *subtitles() { return &m_subtitles; }
    const std::optional<NowPlaying> &nowPlaying() const { return m_nowPlaying; }
    QVariant nowPlayingVariant() const; // null when nothing plays

    /// What would be played, and from which second on.
    struct Start
    {
        QUrl url;
        double at = 0;

        bool operator==(const Start &) const = default;
    };
    Start startOf(const ArchiveFile &file, const MediaItem &item) const;
    /// Absent when the entry's source is no address.
    std::optional<Start> startOf(const HistoryEntry &entry) const;

    // Each plays from where the history says that the viewer stopped, unless that is in the first
    // 10 seconds or the last twentieth.
    void play(const ArchiveFile &file, const MediaItem &item, const QList<ArchiveFile> &subtitles);
    void playLocal(const SavedFile &file);
    /// False, and nothing happens, when the entry's source is no address.
    bool playEntry(const HistoryEntry &entry);

    /// Takes the position into the history, which is then written without delay. Also done when the
    /// film is paused and when it fails.
    void saveNow();
    Q_INVOKABLE void stopPlayback();

Q_SIGNALS:
    void nowPlayingChanged();

private:
    struct Film
    {
        QString key;
        QUrl url;
        QString itemID;
        QString title;
        QUrl thumbnail; // empty: none
        QList<SubtitleTrack> tracks;
    };

    void start(const Film &film);
    double startAt(const QString &key) const;
    QCoro::Task<> offerSiblings(QUrl film);
    void timeChanged(double seconds);
    void playingChanged();
    void keep(double seconds);
    void filmEnded();
    void setNowPlaying(std::optional<NowPlaying> nowPlaying);

    VideoPlayerManager m_player;
    SubtitleManager m_subtitles;
    std::optional<NowPlaying> m_nowPlaying;
    LibraryStore &m_library;
    int m_starts = 0;       // films started so far
    double m_lastSaved = 0; // seconds: the position last written while playing, or the start
    bool m_wasPlaying = false;
    std::optional<double> m_endedAt; // seconds; where the film played to its end
};

} // namespace tavelo
