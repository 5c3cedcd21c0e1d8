// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/MergeResults.h"

#include <QHash>

#include <algorithm>

namespace tavelo {

namespace {

template <typename T>
void fill(std::optional<T> &kept, const std::optional<T> &later)
{
    if (!kept)
        kept = later;
}

void fold(TorrentResult &kept, const TorrentResult &later)
{
    kept.sources += later.sources;
    kept.sources.sort();
    kept.sources.removeDuplicates();
    // An absent number is less than any other.
    kept.seeders = std::max(kept.seeders, later.seeders);
    kept.leechers = std::max(kept.leechers, later.leechers);
    fill(kept.size, later.size);
    fill(kept.magnet, later.magnet);
    fill(kept.torrentURL, later.torrentURL);
    fill(kept.pageURL, later.pageURL);
}

} // namespace

QString mergeKey(const TorrentResult &result)
{
    return result.infoHash ? result.infoHash->toLower() : result.id;
}

QList<TorrentResult> mergeResults(const QList<TorrentResult> &results)
{
    QList<TorrentResult> merged;
    QHash<QString, qsizetype> counted; // how many results there are up to the one of a key
    merged.reserve(results.size());
    counted.reserve(results.size());
    for (const TorrentResult &result : results) {
        qsizetype &count = counted[mergeKey(result)];
        if (count > 0) {
            fold(merged[count - 1], result);
            continue;
        }
        merged.append(result);
        count = merged.size();
    }
    return merged;
}

} // namespace tavelo
