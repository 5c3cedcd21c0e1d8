// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheManager.h"

#include "platform/ThreadPool.h"
#include "platform/http/HttpClient.h"
#include "platform/media/film/FilmMemory.h"
#include "storage/CacheCleaning.h"

#include <QCoroFuture>
#include <QPointer>

#include <limits>

namespace tavelo {

namespace {

const QString urlCacheName = QStringLiteral("URLCache");
const QString filmsName = QStringLiteral("films");
const QString torrentsName = QStringLiteral("Torrents");

struct Space
{
    qint64 used = 0;
    qint64 free = 0;
    CacheFolder::Standing standing = CacheFolder::Standing::Ours;
};

Space measured(const QString &path, const QString &downloads)
{
    const auto cache = CacheFolder::inUse(path, downloads);
    return {cache ? FolderWalk::directorySize(cache->folder(), cache->spared()) : 0,
            FolderWalk::freeSpace(downloads), CacheFolder::standing(path, downloads)};
}

qint64 bytesOf(qint64 megabytes)
{
    constexpr qint64 bytesPerMB = 1024 * 1024;
    return qBound(qint64(0), megabytes, std::numeric_limits<qint64>::max() / bytesPerMB) *
           bytesPerMB;
}

} // namespace

CacheManager::CacheManager(SettingsStore &settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
{
    configureURLCache();
    refresh();
    enforce();
}

QString CacheManager::folderProblem() const
{
    switch (m_standing) {
    case CacheFolder::Standing::Foreign:
        return tr("This folder holds other files. Choose the cache folder again.");
    case CacheFolder::Standing::Missing:
        return tr("No cache was found in this folder: its disk may be missing. Until it is back, "
                  "the cache is kept elsewhere.");
    case CacheFolder::Standing::Ours:
        break;
    }
    return {};
}

std::optional<CacheFolder> CacheManager::folder() const
{
    return CacheFolder::inUse(m_settings.cachePath(), m_settings.downloadsPath());
}

Result<QString> CacheManager::torrentDir() const
{
    const auto cache = folder();
    if (!cache)
        return Error{ErrorKind::Storage, tr("There is no folder for the cache."), 0};
    return cache->subfolder(torrentsName);
}

void CacheManager::configureURLCache()
{
    const auto cache = folder();
    const auto films = cache ? cache->subfolder(filmsName) : Error{};
    FilmMemory::shared().setFolder(films ? *films : QString());
    if (!cache)
        return;
    if (const auto store = cache->subfolder(urlCacheName))
        HttpClient::shared().setCacheFolder(*store);
}

void CacheManager::refresh()
{
    refreshFlow();
}

QCoro::Task<> CacheManager::refreshFlow()
{
    const QPointer<CacheManager> self(this);
    const auto measuring =
        runOnPool([cache = m_settings.cachePath(), downloads = m_settings.downloadsPath()] {
            return measured(cache, downloads);
        });
    const Space space = co_await measuring;
    if (!self)
        co_return;
    m_usedBytes = space.used;
    Q_EMIT usedBytesChanged();
    m_freeBytes = space.free;
    Q_EMIT freeBytesChanged();
    m_standing = space.standing;
    Q_EMIT folderProblemChanged();
}

void CacheManager::enforce()
{
    enforceFlow();
}

QCoro::Task<> CacheManager::enforceFlow()
{
    const QPointer<CacheManager> self(this);
    const auto cleaned =
        runOnPool([path = m_settings.cachePath(), downloads = m_settings.downloadsPath(),
                   days = m_settings.autoCleanDays(), limit = bytesOf(m_settings.cacheLimitMB())] {
            if (const auto cache = CacheFolder::inUse(path, downloads))
                cleanCache(*cache, days, limit, QDateTime::currentDateTimeUtc());
        });
    co_await cleaned;
    if (self)
        refresh();
}

void CacheManager::clear()
{
    clearFlow();
}

QCoro::Task<> CacheManager::clearFlow()
{
    const QPointer<CacheManager> self(this);
    configureURLCache(); // the folder may be another by now
    const auto forgotten = HttpClient::shared().clearCache();
    co_await forgotten;
    if (!self)
        co_return;
    const auto filmsForgotten = FilmMemory::shared().clear();
    co_await filmsForgotten;
    if (!self)
        co_return;
    const auto removed =
        runOnPool([path = m_settings.cachePath(), downloads = m_settings.downloadsPath()] {
            if (const auto cache = CacheFolder::inUse(path, downloads))
                clearCache(*cache, urlCacheName);
        });
    co_await removed;
    if (self)
        refresh();
}

} // namespace tavelo
