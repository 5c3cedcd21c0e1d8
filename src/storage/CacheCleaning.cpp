// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheCleaning.h"

#include "platform/FolderWalk.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <vector>

namespace tavelo {

namespace {

using FolderWalk::File;

void remove(const File &file)
{
    QFile::remove(QFile::decodeName(file.path));
}

bool isGone(const File &file)
{
    return !QFileInfo::exists(QFile::decodeName(file.path));
}

void removeOlderThan(std::vector<File> &files, qint64 cutoffNs)
{
    for (const File &file : files) {
        if (file.modifiedNs < cutoffNs)
            remove(file);
    }
    std::erase_if(files, isGone);
}

void removeUntil(std::vector<File> &files, qint64 limitBytes)
{
    std::ranges::stable_sort(files, {}, &File::modifiedNs);
    qint64 total = 0;
    for (const File &file : files)
        total += file.allocated;
    for (const File &file : files) {
        if (total <= limitBytes)
            return;
        total -= file.allocated;
        remove(file);
    }
}

} // namespace

void cleanCache(const QString &folder, qint64 days, qint64 limitBytes, const QDateTime &now)
{
    constexpr qint64 nsPerMs = 1'000'000;
    std::vector<File> files;
    FolderWalk::files(folder, [&](const File &file) { files.push_back(file); });
    if (days > 0) {
        const QDateTime cutoff = now.addDays(-std::min(days, qint64(36'500)));
        removeOlderThan(files, cutoff.toMSecsSinceEpoch() * nsPerMs);
    }
    removeUntil(files, limitBytes);
}

} // namespace tavelo
