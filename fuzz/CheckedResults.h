// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "FuzzInput.h"
#include "platform/Result.h"
#include "search/MergeResults.h"

namespace tavelo {

/// What holds for the results of any provider, whatever it was sent.
inline void check(const Result<QList<TorrentResult>> &results)
{
    if (!results) {
        require(!results.error().text.isNull());
        return;
    }
    for (const TorrentResult &result : *results) {
        require(!result.infoHash || *result.infoHash == result.infoHash->toLower());
        require(!result.torrentURL || result.torrentURL->isValid());
        require(result.sources.size() == 1 && !result.quality().isEmpty());
    }
    const QList<TorrentResult> merged = mergeResults(*results);
    require(merged.size() <= results->size() && mergeResults(merged) == merged);
}

} // namespace tavelo
