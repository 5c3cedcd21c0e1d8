// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/StorageText.h"

#include "catalogue/Fmt.h"
#include "catalogue/KeyMask.h"

namespace tavelo {

QString StorageText::freeSpace(qint64 bytes)
{
    return QStringLiteral("Free space: ") + Fmt::byteCount(bytes);
}

QString StorageText::cacheUse(qint64 usedBytes, qint64 freeBytes)
{
    return QStringLiteral("Cache in use: ") + Fmt::byteCount(usedBytes) +
           QStringLiteral(" · Free disk space: ") + Fmt::byteCount(freeBytes);
}

QString StorageText::cacheLimit(qint64 megabytes)
{
    return QStringLiteral("Cache limit: %1 MB").arg(megabytes);
}

QString StorageText::autoClean(qint64 days)
{
    return days == 0 ? QStringLiteral("Auto-clean cache: never")
                     : QStringLiteral("Auto-clean cache older than %1 days").arg(days);
}

QString StorageText::provider(const ProviderConfig &config)
{
    return label(config.kind) + QStringLiteral(" · ") + KeyMask::address(config.baseURL);
}

} // namespace tavelo
