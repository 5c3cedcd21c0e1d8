// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/PlaybackCoordinator.h"

namespace tavelo {

PlaybackCoordinator::PlaybackCoordinator(VideoPlayerManager::EngineFactory makeEngine,
                                         QObject *parent)
    : QObject(parent)
    , m_player(std::move(makeEngine))
{}

QVariant PlaybackCoordinator::nowPlayingVariant() const
{
    return m_nowPlaying ? QVariant::fromValue(*m_nowPlaying) : QVariant::fromValue(nullptr);
}

void PlaybackCoordinator::play(const ArchiveFile &file, const MediaItem &item)
{
    setNowPlaying(
        NowPlaying{item.id + QLatin1Char('|') + file.name, item.title, item.thumbnailURL()});
    m_player.load(file.url, 0);
}

void PlaybackCoordinator::stopPlayback()
{
    setNowPlaying({});
    m_player.stop();
}

void PlaybackCoordinator::setNowPlaying(std::optional<NowPlaying> nowPlaying)
{
    m_nowPlaying = std::move(nowPlaying);
    Q_EMIT nowPlayingChanged();
}

} // namespace tavelo
