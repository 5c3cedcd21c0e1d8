// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ArchiveFile.h"
#include "catalogue/MediaItem.h"
#include "playback/NowPlaying.h"
#include "playback/VideoPlayerManager.h"

#include <QVariant>

#include <optional>

namespace tavelo {

/// Owns the player and knows what it plays.
class PlaybackCoordinator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(tavelo::VideoPlayerManager *player READ player CONSTANT)
    Q_PROPERTY(QVariant nowPlaying READ nowPlayingVariant NOTIFY nowPlayingChanged)

public:
    explicit PlaybackCoordinator(VideoPlayerManager::EngineFactory makeEngine,
                                 QObject *parent = nullptr);

    VideoPlayerManager *player() { return &m_player; }
    const std::optional<NowPlaying> &nowPlaying() const { return m_nowPlaying; }
    QVariant nowPlayingVariant() const; // null when nothing plays

    void play(const ArchiveFile &file, const MediaItem &item);
    Q_INVOKABLE void stopPlayback();

Q_SIGNALS:
    void nowPlayingChanged();

private:
    void setNowPlaying(std::optional<NowPlaying> nowPlaying);

    VideoPlayerManager m_player;
    std::optional<NowPlaying> m_nowPlaying;
};

} // namespace tavelo
