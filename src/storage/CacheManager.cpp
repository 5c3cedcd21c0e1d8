// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheManager.h"

#include "platform/FolderWalk.h"
#include "platform/HttpClient.h"
#include "platform/ThreadPool.h"
#include "storage/CacheCleaning.h"

#include <QCoroFuture>
#include <QDir>
#include <QPointer>

#include <limits>

namespace tavelo {

namespace {

const QString urlCacheName = QStringLiteral("URLCache");
const QString torrentsName = QStringLiteral("Torrents");

struct Space
{
    qint64 used = 0;
    qint64 free = 0;
};

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

Result<QString> CacheManager::torrentDir() const
{
    const QString folder = QDir(m_settings.cachePath()).filePath(torrentsName);
    if (!QDir().mkpath(folder))
        return Error{ErrorKind::Storage, tr("The folder %1 cannot be created.").arg(folder), 0};
    return folder;
}

void CacheManager::configureURLCache()
{
    HttpClient::shared().setCacheFolder(QDir(m_settings.cachePath()).filePath(urlCacheName));
}

void CacheManager::refresh()
{
    refreshFlow();
}

QCoro::Task<> CacheManager::refreshFlow()
{
    const QPointer<CacheManager> self(this);
    const auto measured =
        runOnPool([cache = m_settings.cachePath(), downloads = m_settings.downloadsPath()] {
            return Space{FolderWalk::directorySize(cache), FolderWalk::freeSpace(downloads)};
        });
    const Space space = co_await measured;
    if (!self)
        co_return;
    m_usedBytes = space.used;
    Q_EMIT usedBytesChanged();
    m_freeBytes = space.free;
    Q_EMIT freeBytesChanged();
}

void CacheManager::enforce()
{
    enforceFlow();
}

QCoro::Task<> CacheManager::enforceFlow()
{
    const QPointer<CacheManager> self(this);
    const auto cleaned =
        runOnPool([cache = m_settings.cachePath(), days = m_settings.autoCleanDays(),
                   limit = bytesOf(m_settings.cacheLimitMB())] {
            cleanCache(cache, days, limit, QDateTime::currentDateTimeUtc());
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
    const QString cache = m_settings.cachePath();
    const auto forgotten = HttpClient::shared().clearCache();
    co_await forgotten;
    const auto removed = runOnPool([cache] { FolderWalk::removeEntries(cache, urlCacheName); });
    co_await removed;
    if (self)
        refresh();
}

} // namespace tavelo
