// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/AppState.h"

#include "app/TorrentFile.h"
#include "catalogue/FetchData.h"
#include "platform/ThreadPool.h"
#include "platform/http/HttpClient.h"
#include "torrent/Magnet.h"
#include "torrent/TorrentMetadata.h"
#include "transfers/DownloadName.h"

#include <QCoroFuture>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

constexpr QLatin1String magnetScheme("magnet:");
const QString invalidMagnet = QStringLiteral("That doesn't look like a valid magnet link.");

Result<TorrentInfo> redirectedTo(const QString &magnet)
{
    const auto torrent = TorrentMetadata::parseMagnet(magnet);
    if (torrent)
        return *torrent;
    return Error{ErrorKind::Malformed,
                 AppState::tr("The server redirects to a magnet link that is not valid."), 0};
}

} // namespace

void AppState::play(const ArchiveFile &file, const MediaItem &item,
                    const QList<ArchiveFile> &subtitles)
{
    m_foresight.handOver(file);
    m_playback.play(file, item, subtitles);
    clearSelectedItem();
    setShowPlayer(true);
}

void AppState::playLocal(const SavedFile &file)
{
    m_foresight.handOver(file.url);
    m_playback.playLocal(file);
    setShowPlayer(true);
}

void AppState::resume(const HistoryEntry &entry)
{
    if (const auto start = m_playback.startOf(entry))
        m_foresight.handOver(start->url);
    if (!m_playback.playEntry(entry))
        return setNotice(QStringLiteral("The watch history holds no address for this film."));
    setShowPlayer(true);
}

void AppState::playDownload(const DownloadTask &task)
{
    const QList<SavedFile> saved = m_downloads.saved();
    const auto file =
        std::ranges::find(saved, QDir::cleanPath(task.dest), [](const SavedFile &one) {
            return QDir::cleanPath(one.url.toLocalFile());
        });
    if (file != saved.end())
        playLocal(*file);
}

void AppState::closePlayer()
{
    playback()->stopPlayback();
    setShowPlayer(false);
}

void AppState::download(const ArchiveFile &file, const MediaItem &item)
{
    if (const auto refusal =
            m_downloads.start(item.title, file.url(), file.size, {item.id, file.checksum}))
        return setNotice(*refusal);
    setSection(SidebarSection::Downloads);
    clearSelectedItem();
}

void AppState::inspectMagnet(const QString &text)
{
    const int number = ++m_openings;
    if (const auto torrent = TorrentMetadata::parseMagnet(text))
        setOpened(number, *torrent);
    else
        setNotice(invalidMagnet);
}

void AppState::inspectTorrentURL(const QUrl &url)
{
    inspectFlow(url);
}

QCoro::Task<> AppState::inspectFlow(QUrl url)
{
    const QPointer<AppState> self(this);
    // A client of its own, which keeps no responses: such links often hold a key.
    const std::unique_ptr<HttpClient, QScopedPointerDeleteLater> client(new HttpClient);
    auto response = co_await client->get(url, 25s);
    if (!self)
        co_return;
    if (response && response->leadsTo.startsWith(magnetScheme))
        co_return setInspected(redirectedTo(response->leadsTo));
    const auto bytes = bodyOf(std::move(response));
    if (!bytes)
        co_return setInspected(bytes.error());
    const auto folder = m_cache.torrentDir();
    const QString name = QFileInfo(lastComponent(url)).completeBaseName();
    const auto parsing = runOnPool([data = *bytes, folder, name] {
        return folder ? TorrentFile::keep(data, *folder, name)
                      : TorrentMetadata::parseTorrent(data);
    });
    const auto torrent = co_await parsing;
    if (!self)
        co_return;
    setInspected(torrent);
    if (torrent)
        m_cache.refresh();
}

void AppState::inspectTorrentFile(const QUrl &file)
{
    inspectFileFlow(file.toLocalFile());
}

QCoro::Task<> AppState::inspectFileFlow(QString path)
{
    const QPointer<AppState> self(this);
    const int number = ++m_openings;
    const auto parsing = runOnPool([path] { return TorrentFile::read(path); });
    const auto torrent = co_await parsing;
    if (!self)
        co_return;
    if (torrent)
        setOpened(number, *torrent);
    else
        setInspected(torrent);
}

/// Of what is opened at about the same time, the last one stays, however long a file takes.
void AppState::setOpened(int number, const TorrentInfo &torrent)
{
    if (number < m_shownOpening)
        return;
    m_shownOpening = number;
    setInspector(torrent);
}

void AppState::setInspected(const Result<TorrentInfo> &torrent)
{
    if (torrent)
        setInspector(*torrent);
    else
        setNotice(QStringLiteral("Couldn't read torrent: ") + torrent.error().text);
}

void AppState::setInspector(const TorrentInfo &torrent)
{
    m_inspector = torrent;
    Q_EMIT inspectorChanged();
}

void AppState::openMagnet(const QString &link)
{
    if (const auto magnet = essentialMagnet(link))
        openExternally(*magnet);
    else
        setNotice(invalidMagnet);
}

void AppState::openTorrentFile(const QUrl &file, const QString &infoHash)
{
    whenUnchanged(file, infoHash, [=, this] { openExternally(file.toString(QUrl::FullyEncoded)); });
}

void AppState::showTorrentFile(const QUrl &file, const QString &infoHash)
{
    whenUnchanged(file, infoHash, [=, this] { showInFileManager(file); });
}

QCoro::Task<> AppState::whenUnchanged(QUrl file, QString infoHash, std::function<void()> deed)
{
    const QPointer<AppState> self(this);
    const auto checking = runOnPool(
        [path = file.toLocalFile(), infoHash] { return TorrentFile::mismatch(path, infoHash); });
    const auto error = co_await checking;
    if (self && error)
        setNotice(error->text);
    else if (self)
        deed();
}

void AppState::openExternally(const QString &address)
{
    openFlow(address);
}

QCoro::Task<> AppState::openFlow(QString address)
{
    const QPointer<AppState> self(this);
    const auto application = co_await m_workspace->applicationFor(address);
    if (!self)
        co_return;
    if (application) {
        co_await tellFailure(m_workspace->open(address));
        co_return;
    }
    const bool magnet = address.startsWith(magnetScheme);
    setNotice(QStringLiteral("No app on this Mac is registered to open %1. "
                             "Install a BitTorrent client to use it.")
                  .arg(magnet ? QLatin1String("magnet links") : QLatin1String(".torrent files")));
}

void AppState::openWebPage(const QUrl &url)
{
    tellFailure(m_workspace->openWebPage(url));
}

void AppState::showInFileManager(const QUrl &file)
{
    tellFailure(m_workspace->showInFileManager(file.toLocalFile()));
}

void AppState::useCacheFolder(const QUrl &folder)
{
    if (!folder.isLocalFile())
        return;
    cacheFolderFlow(folder.toLocalFile());
}

QCoro::Task<> AppState::cacheFolderFlow(QString path)
{
    const QPointer<AppState> self(this);
    const auto choosing = runOnPool([path, downloads = m_settings.downloadsPath()] {
        return CacheFolder::choose(path, downloads);
    });
    const auto chosen = co_await choosing;
    if (!self)
        co_return;
    if (!chosen)
        co_return setNotice(chosen.error().text);
    m_settings.setCachePath(*chosen);
    m_cache.configureURLCache();
    m_cache.refresh();
}

void AppState::useDownloadsFolder(const QUrl &folder)
{
    if (!folder.isLocalFile())
        return;
    m_settings.setDownloadsPath(folder.toLocalFile());
    m_cache.configureURLCache(); // the two folders may be one now
    m_cache.refresh();
}

QCoro::Task<> AppState::tellFailure(QCoro::Task<Workspace::Outcome> deed)
{
    const QPointer<AppState> self(this);
    const auto error = co_await deed;
    if (self && error)
        setNotice(error->text);
}

} // namespace tavelo
