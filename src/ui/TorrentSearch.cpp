// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentSearch.h"

#include <algorithm>

namespace tavelo {

void TorrentSearch::setApp(AppState *app)
{
    m_app = app;
    const SearchAggregator *aggregator = app->aggregator();
    connect(aggregator, &SearchAggregator::statusesChanged, this, &TorrentSearch::chipsChanged);
    for (const auto signal :
         {&SearchAggregator::resultsChanged, &SearchAggregator::lastQueryChanged,
          &SearchAggregator::isSearchingChanged})
        connect(aggregator, signal, this, &TorrentSearch::changed);
    connect(app->settings(), &SettingsStore::providersChanged, this,
            &TorrentSearch::providersChanged);
    Q_EMIT appChanged();
    Q_EMIT providersChanged();
    Q_EMIT chipsChanged();
    Q_EMIT changed();
}

bool TorrentSearch::unprovided() const
{
    return m_app && std::ranges::none_of(m_app->settings()->providers(), &ProviderConfig::enabled);
}

QList<ProviderChip> TorrentSearch::chips() const
{
    QList<ProviderChip> chips;
    if (!m_app)
        return chips;
    for (const ProviderStatus &status : m_app->aggregator()->statuses())
        chips.append(ProviderChip::of(status));
    return chips;
}

bool TorrentSearch::hasResults() const
{
    return m_app && !m_app->aggregator()->results().isEmpty();
}

QString TorrentSearch::message() const
{
    if (!m_app || hasResults())
        return {};
    const SearchAggregator *aggregator = m_app->aggregator();
    if (aggregator->isSearching())
        return QStringLiteral("Searching…");
    if (aggregator->lastQuery().isEmpty())
        return QStringLiteral("Enter a search to query your enabled providers in parallel.");
    return QStringLiteral("No results.");
}

void TorrentSearch::search(const QString &text)
{
    if (m_app && !text.trimmed().isEmpty())
        m_app->aggregator()->search(text, m_app->registry()->enabledProviders());
}

} // namespace tavelo
