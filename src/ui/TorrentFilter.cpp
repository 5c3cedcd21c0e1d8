// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentFilter.h"

#include "ui/TorrentRow.h"

#include <algorithm>

namespace tavelo {

namespace {

constexpr qint64 unit = 1'073'741'824; // bytes

} // namespace

bool TorrentFilter::accepts(const TorrentRow &row) const
{
    const auto isHidden = [this](const QString &name) { return hiddenSources.contains(name); };
    return (resolution == any() || resolution == row.quality) &&
           (format == any() || format == row.format) &&
           (maxSizeGB == 0 || row.result.size.value_or(0) <= maxSizeGB * unit) &&
           !std::ranges::all_of(row.result.sources, isHidden);
}

} // namespace tavelo
