// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ArchiveSearchProvider.h"

#include "catalogue/OrvellaProvider.h"

namespace tavelo {

QCoro::Task<TorrentResults> ArchiveSearchProvider::search(QString query, std::stop_token stop) const
{
    const QString source = config().name;
    constexpr int rows = 30;
    const auto items = co_await OrvellaProvider::search(query, {}, QStringLiteral("downloads desc"),
                                                        rows, 1, std::move(stop));
    if (!items)
        co_return items.error();
    QList<TorrentResult> results;
    for (const MediaItem &item : items->first(qMin(items->size(), qsizetype(rows))))
        results.append(resultOf(item, source));
    co_return results;
}

TorrentResult ArchiveSearchProvider::resultOf(const MediaItem &item, const QString &source)
{
    TorrentResult result;
    result.id = QLatin1String("archive:") + item.id;
    result.title = item.title;
    result.sources = {source};
    result.archiveID = item.id;
    result.pageURL = item.pageURL();
    result.year = item.year;
    result.license = item.licenseURL;
    return result;
}

} // namespace tavelo
