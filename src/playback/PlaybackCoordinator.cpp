// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/PlaybackCoordinator.h"

#include "catalogue/Text.h"
#include "platform/ThreadPool.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QPointer>

#include <cmath>
#include <utility>

namespace tavelo {

namespace {

constexpr double saveInterval = 5; // seconds of the film
constexpr QLatin1Char separator('|');
const QString localID = QStringLiteral("local");

QList<SubtitleTrack> tracksOf(const QList<ArchiveFile> &files)
{
    QList<SubtitleTrack> tracks;
    for (const ArchiveFile &file : files)
        tracks.append({file.name, file.url()});
    return tracks;
}

// What follows the first separator; the whole key, or what precedes it, where nothing does.
QString tailOf(const QString &key)
{
    const qsizetype at = key.indexOf(separator);
    if (at < 0)
        return key;
    return at + 1 < key.size() ? key.sliced(at + 1) : key.first(at);
}

QString keyOf(const ArchiveFile &file, const MediaItem &item)
{
    return item.id + separator + file.name;
}

QString keyOf(const HistoryEntry &entry)
{
    return entry.itemID + separator + tailOf(entry.key);
}

std::optional<QUrl> addressOf(const HistoryEntry &entry)
{
    const auto url =
        entry.isLocal ? std::optional(QUrl::fromLocalFile(entry.source)) : Text::url(entry.source);
    return url && !url->isEmpty() ? url : std::nullopt;
}

} // namespace

PlaybackCoordinator::PlaybackCoordinator(LibraryStore &library,
                                         VideoPlayerManager::EngineFactory makeEngine,
                                         QObject *parent)
    : QObject(parent)
    , m_player(std::move(makeEngine))
    , m_library(library)
{
    connect(&m_player, &VideoPlayerManager::currentTimeChanged, this,
            &PlaybackCoordinator::timeChanged, Qt::DirectConnection);
    connect(&m_player, &VideoPlayerManager::isPlayingChanged, this,
            &PlaybackCoordinator::playingChanged);
    connect(&m_player, &VideoPlayerManager::errorChanged, this, [this] {
        if (m_player.error())
            saveNow();
    });
    m_player.setOnFinished([this] { filmEnded(); });
}

QVariant PlaybackCoordinator::nowPlayingVariant() const
{
    return m_nowPlaying ? QVariant::fromValue(*m_nowPlaying) : QVariant::fromValue(nullptr);
}

void PlaybackCoordinator::play(const ArchiveFile &file, const MediaItem &item,
                               const QList<ArchiveFile> &subtitles)
{
    start({keyOf(file, item), file.url(), item.id, item.title, item.thumbnailURL(),
           tracksOf(subtitles)});
}

void PlaybackCoordinator::playLocal(const SavedFile &file)
{
    const QFileInfo info(file.url.toLocalFile());
    start({localID + separator + info.fileName(),
           file.url,
           localID,
           info.completeBaseName(),
           QUrl(),
           {}});
    offerSiblings(file.url);
}

bool PlaybackCoordinator::playEntry(const HistoryEntry &entry)
{
    const auto url = addressOf(entry);
    if (!url)
        return false;
    start({keyOf(entry), *url, entry.itemID, entry.title, entry.thumbnailURL(), {}});
    if (entry.isLocal)
        offerSiblings(*url);
    return true;
}

PlaybackCoordinator::Start PlaybackCoordinator::startOf(const ArchiveFile &file,
                                                        const MediaItem &item) const
{
    return {file.url(), startAt(keyOf(file, item))};
}

std::optional<PlaybackCoordinator::Start>
PlaybackCoordinator::startOf(const HistoryEntry &entry) const
{
    const auto url = addressOf(entry);
    return url ? std::optional(Start{*url, startAt(keyOf(entry))}) : std::nullopt;
}

double PlaybackCoordinator::startAt(const QString &key) const
{
    const auto known = m_library.entryFor(key);
    return known && known->isUnderway() ? known->position : 0;
}

// The film does not wait for its folder, which may be large or slow.
QCoro::Task<> PlaybackCoordinator::offerSiblings(QUrl film)
{
    const QPointer<PlaybackCoordinator> self(this);
    const int number = m_starts;
    const auto walking = runOnPool([film] { return siblingSubtitles(film); });
    const QList<SubtitleTrack> tracks = co_await walking;
    if (self && number == m_starts && m_nowPlaying)
        m_subtitles.offer(tracks);
}

void PlaybackCoordinator::start(const Film &film)
{
    saveNow();
    ++m_starts;
    const auto known = m_library.entryFor(film.key);
    HistoryEntry entry;
    entry.key = film.key;
    entry.itemID = film.itemID;
    entry.title = film.title;
    entry.isLocal = film.url.isLocalFile();
    entry.source = entry.isLocal ? film.url.toLocalFile() : film.url.toString(QUrl::FullyEncoded);
    if (!film.thumbnail.isEmpty())
        entry.thumbnail = film.thumbnail.toString(QUrl::FullyEncoded);
    entry.position = startAt(film.key);
    entry.duration = known ? known->duration : 0;
    entry.lastPlayed = QDateTime::currentDateTimeUtc();
    m_library.record(entry);
    setNowPlaying(NowPlaying{film.key, film.title, film.thumbnail});
    m_subtitles.reset(film.tracks);
    m_lastSaved = entry.position;
    m_endedAt.reset();
    m_player.load(film.url, entry.position);
}

void PlaybackCoordinator::timeChanged(double seconds)
{
    if (!m_nowPlaying)
        return;
    m_subtitles.update(seconds);
    if (std::abs(seconds - m_lastSaved) < saveInterval)
        return;
    m_lastSaved = seconds;
    keep(seconds);
}

void PlaybackCoordinator::playingChanged()
{
    if (std::exchange(m_wasPlaying, m_player.isPlaying()) && !m_wasPlaying)
        saveNow();
}

void PlaybackCoordinator::filmEnded()
{
    m_endedAt = m_player.currentTime();
    if (m_nowPlaying)
        m_library.updateProgress(m_nowPlaying->key, 0, m_player.duration());
}

void PlaybackCoordinator::saveNow()
{
    keep(m_player.currentTime());
    m_library.file().hurry();
}

void PlaybackCoordinator::keep(double seconds)
{
    if (!m_nowPlaying)
        return;
    // Whoever resumes a film of unknown length at its end sees nothing of it.
    const bool over = m_endedAt && seconds > *m_endedAt - 1 && m_player.duration() <= 0;
    m_library.updateProgress(m_nowPlaying->key, over ? 0 : seconds, m_player.duration());
}

void PlaybackCoordinator::stopPlayback()
{
    saveNow();
    // Before the player goes back to 0, which must not be written.
    setNowPlaying({});
    m_player.stop();
    m_subtitles.reset({});
}

void PlaybackCoordinator::setNowPlaying(std::optional<NowPlaying> nowPlaying)
{
    m_nowPlaying = std::move(nowPlaying);
    Q_EMIT nowPlayingChanged();
}

} // namespace tavelo
