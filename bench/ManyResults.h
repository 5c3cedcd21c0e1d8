// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchAggregator.h"
#include "ui/TorrentResultModel.h"

#include <QQuickItem>

// Ten thousand search results in the program's window.

namespace tavelo {

constexpr int resultCount = 10'000;

/// Has all its results at once.
class ReadyProvider : public TorrentSearchProvider
{
public:
    using TorrentSearchProvider::TorrentSearchProvider;

    QCoro::Task<TorrentResults> search(QString, std::stop_token) const override
    {
        QList<TorrentResult> results;
        for (int i = 0; i < resultCount; ++i) {
            TorrentResult result;
            result.id = QString::number(i);
            result.title = QStringLiteral("The.Lantern.Makers.%1.%2.x264")
                               .arg(i * 7919 % resultCount)
                               .arg(i % 3 ? QStringLiteral("1080p.mkv") : QStringLiteral("720p"));
            result.size = i * 104'729LL % 20'000'000'000;
            result.seeders = i * 31 % 997;
            result.sources = {QStringLiteral("Provider %1").arg(i % 5)};
            results.append(result);
        }
        co_return results;
    }
};

inline void searchForMany(SearchAggregator &aggregator)
{
    const auto config = ProviderConfig::create(QStringLiteral("Ready"), ProviderKind::ApiBay, {});
    aggregator.search(QStringLiteral("lantern"), {std::make_shared<ReadyProvider>(config)});
}

/// The table's model below an item; null when there is no table.
inline TorrentResultModel *resultsIn(const QQuickItem *item)
{
    if (auto *model = item->property("results").value<TorrentResultModel *>())
        return model;
    for (const QQuickItem *child : item->childItems()) {
        if (auto *model = resultsIn(child))
            return model;
    }
    return nullptr;
}

} // namespace tavelo
