// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ProviderRegistry.h"

#include <algorithm>

namespace tavelo {

ProviderRegistry::ProviderRegistry(SettingsStore &settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
{}

TorrentSearchProviders ProviderRegistry::enabledProviders() const
{
    TorrentSearchProviders providers;
    for (const ProviderConfig &config : m_settings.providers()) {
        if (config.enabled)
            providers.append(makeProvider(config));
    }
    return providers;
}

void ProviderRegistry::add(const ProviderConfig &config)
{
    m_settings.setProviders(m_settings.providers() << config);
    Q_EMIT changed();
}

void ProviderRegistry::remove(const QUuid &id)
{
    QList<ProviderConfig> providers = m_settings.providers();
    providers.removeIf([&](const ProviderConfig &config) { return config.id == id; });
    m_settings.setProviders(providers);
    Q_EMIT changed();
}

void ProviderRegistry::setEnabled(const QUuid &id, bool on)
{
    QList<ProviderConfig> providers = m_settings.providers();
    const auto found = std::ranges::find(providers, id, &ProviderConfig::id);
    if (found != providers.end()) {
        found->enabled = on;
        m_settings.setProviders(providers);
    }
    Q_EMIT changed();
}

} // namespace tavelo
