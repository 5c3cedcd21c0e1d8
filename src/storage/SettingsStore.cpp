// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/SettingsStore.h"

#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"

#include <QDir>

namespace tavelo {

namespace {

const QString cachePathKey = QStringLiteral("cachePath");
const QString downloadsPathKey = QStringLiteral("downloadsPath");
const QString cacheLimitMBKey = QStringLiteral("cacheLimitMB");
const QString autoCleanDaysKey = QStringLiteral("autoCleanDays");
const QString gridViewKey = QStringLiteral("gridView");
const QString providersKey = QStringLiteral("providers");

QList<ProviderConfig> defaultProviders()
{
    const ServiceHosts &hosts = ServiceHosts::current();
    return {ProviderConfig::create(QStringLiteral("Orvella"), ProviderKind::Orvella, hosts.archive),
            ProviderConfig::create(QStringLiteral("YTS"), ProviderKind::Yts, hosts.yts),
            ProviderConfig::create(QStringLiteral("ApiBay"), ProviderKind::ApiBay, hosts.apibay)};
}

QList<ProviderConfig> storedProviders(Preferences &preferences)
{
    if (!preferences.contains(providersKey))
        return defaultProviders();
    const auto json = preferences.bytes(providersKey);
    const auto stored = json ? providersFromJson(*json) : std::nullopt;
    const QList<ProviderConfig> providers = stored ? stored->whole : defaultProviders();
    if (!stored || stored->damaged > 0) {
        preferences.keepAside();
        preferences.set(providersKey, toJson(providers));
    }
    return providers;
}

} // namespace

SettingsStore::SettingsStore(QObject *parent)
    : QObject(parent)
    , m_preferences(StandardFolders::configuration() + QLatin1String("/preferences.json"))
    , m_cachePath(m_preferences.string(cachePathKey).value_or(defaultCachePath()))
    , m_downloadsPath(m_preferences.string(downloadsPathKey).value_or(StandardFolders::movies()))
    , m_cacheLimitMB(m_preferences.integer(cacheLimitMBKey).value_or(1024))
    , m_autoCleanDays(m_preferences.integer(autoCleanDaysKey).value_or(14))
    , m_gridView(m_preferences.boolean(gridViewKey).value_or(true))
    , m_providers(storedProviders(m_preferences))
{}

QString SettingsStore::appSupport()
{
    static const QString folder = [] {
        const QString path = StandardFolders::support();
        QDir().mkpath(path);
        return path;
    }();
    return folder;
}

QString SettingsStore::defaultCachePath()
{
    return appSupport() + QLatin1String("/Cache");
}

void SettingsStore::setCachePath(const QString &path)
{
    m_cachePath = path;
    m_preferences.set(cachePathKey, path);
    Q_EMIT cachePathChanged();
}

void SettingsStore::setDownloadsPath(const QString &path)
{
    m_downloadsPath = path;
    m_preferences.set(downloadsPathKey, path);
    Q_EMIT downloadsPathChanged();
}

void SettingsStore::setCacheLimitMB(qint64 limit)
{
    m_cacheLimitMB = limit;
    m_preferences.set(cacheLimitMBKey, limit);
    Q_EMIT cacheLimitMBChanged();
}

void SettingsStore::setAutoCleanDays(qint64 days)
{
    m_autoCleanDays = days;
    m_preferences.set(autoCleanDaysKey, days);
    Q_EMIT autoCleanDaysChanged();
}

void SettingsStore::setGridView(bool grid)
{
    m_gridView = grid;
    m_preferences.set(gridViewKey, grid);
    Q_EMIT gridViewChanged();
}

void SettingsStore::setProviders(const QList<ProviderConfig> &providers)
{
    m_providers = providers;
    m_preferences.set(providersKey, toJson(providers));
    Q_EMIT providersChanged();
}

} // namespace tavelo
