// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "storage/CacheFolder.h"

#include <QDateTime>

namespace tavelo {

// Neither enters what the folder spares, nor removes its tag. What cannot be removed is passed
// over. For background threads.

/// Removes the files modified more than `days` days before `now` (none when `days` is not above 0),
/// then the oldest of the rest until they take `limitBytes` at most; folders stay.
void cleanCache(const CacheFolder &cache, qint64 days, qint64 limitBytes, const QDateTime &now);

/// Removes everything but the entry named `kept`.
void clearCache(const CacheFolder &cache, const QString &kept);

} // namespace tavelo
