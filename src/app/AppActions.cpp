// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "catalogue/FetchData.h"
#include "platform/FileContent.h"
#include "platform/ThreadPool.h"
#include "storage/DownloadName.h"
#include "torrent/TorrentMetadata.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QPointer>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

// Keeps a copy at `path`, for the user's own application; one that fails is missed there only.
Result<TorrentInfo> keepAndParse(const QByteArray &bytes, const QString &path)
{
    FileContent::replace(path, bytes);
    Result<TorrentInfo> torrent = TorrentMetadata::parseTorrent(bytes);
    if (!torrent)
        return torrent;
    TorrentInfo info = *std::move(torrent);
    info.fileURL = QUrl::fromLocalFile(path);
    return info;
}

} // namespace

void AppState::play(const ArchiveFile &file, const MediaItem &item,
                    const QList<ArchiveFile> &subtitles)
{
    m_playback.play(file, item, subtitles);
    clearSelectedItem();
    setShowPlayer(true);
}

void AppState::playLocal(const SavedFile &file)
{
    m_playback.playLocal(file);
    setShowPlayer(true);
}

void AppState::resume(const HistoryEntry &entry)
{
    m_playback.playEntry(entry);
    setShowPlayer(true);
}

void AppState::download(const ArchiveFile &file, const MediaItem &item)
{
    if (const auto refusal = m_downloads.start(item.title, file.url, file.size))
        return setNotice(*refusal);
    setSection(SidebarSection::Downloads);
    clearSelectedItem();
}

void AppState::inspectMagnet(const QString &text)
{
    if (const auto torrent = TorrentMetadata::parseMagnet(text))
        setInspector(*torrent);
    else
        setNotice(QStringLiteral("That doesn't look like a valid magnet link."));
}

void AppState::inspectTorrentURL(const QUrl &url)
{
    inspectFlow(url);
}

QCoro::Task<> AppState::inspectFlow(QUrl url)
{
    const QPointer<AppState> self(this);
    const QString failed = QStringLiteral("Couldn't read torrent: ");
    const auto bytes = co_await fetchData(url, 25s);
    if (!self)
        co_return;
    if (!bytes)
        co_return setNotice(failed + bytes.error().text);
    const auto folder = m_cache.torrentDir();
    const QString name = QFileInfo(downloadName(url)).completeBaseName();
    const QString path = (folder ? *folder : m_settings.cachePath()) + QLatin1Char('/') + name +
                         QLatin1String(".torrent");
    const auto parsing = runOnPool([data = *bytes, path] { return keepAndParse(data, path); });
    const auto torrent = co_await parsing;
    if (!self)
        co_return;
    if (!torrent)
        co_return setNotice(failed + torrent.error().text);
    setInspector(*torrent);
    m_cache.refresh();
}

void AppState::setInspector(const TorrentInfo &torrent)
{
    m_inspector = torrent;
    Q_EMIT inspectorChanged();
}

} // namespace tavelo
