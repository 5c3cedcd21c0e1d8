// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/TorrentInfo.h"

#include <limits>

namespace tavelo {

qint64 TorrentInfo::totalSize() const
{
    using Limits = std::numeric_limits<qint64>;
    qint64 total = 0;
    for (const TorrentFileEntry &file : files) {
        if (__builtin_add_overflow(total, file.size, &total))
            return file.size > 0 ? Limits::max() : Limits::min();
    }
    return total;
}

} // namespace tavelo
