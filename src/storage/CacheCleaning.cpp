// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "storage/CacheCleaning.h"

#include "storage/CacheTag.h"

#include <QFile>

#include <algorithm>
#include <vector>

namespace tavelo {

namespace {

using FolderWalk::File;

class Cleaning
{
public:
    explicit Cleaning(const CacheFolder &cache)
        : m_cache(cache)
        , m_spared(cache.spared())
    {
        FolderWalk::files(m_cache.folder(), m_spared, [this](const File &file) {
            if (file.path != CacheTag::fileName)
                m_files.push_back(file);
        });
    }

    void removeOlderThan(qint64 cutoffNs)
    {
        std::erase_if(m_files,
                      [&](const File &file) { return file.modifiedNs < cutoffNs && remove(file); });
    }

    void removeUntil(qint64 limitBytes)
    {
        std::ranges::stable_sort(m_files, {}, &File::modifiedNs);
        qint64 total = 0;
        for (const File &file : m_files)
            total += file.allocated;
        for (const File &file : m_files) {
            if (total <= limitBytes)
                return;
            total -= file.allocated;
            remove(file);
        }
    }

private:
    bool remove(const File &file) const
    {
        return FolderWalk::removeFile(m_cache.folder(), file.path, m_spared);
    }

    const CacheFolder &m_cache;
    const FolderWalk::Ids m_spared;
    std::vector<File> m_files;
};

} // namespace

void cleanCache(const CacheFolder &cache, qint64 days, qint64 limitBytes, const QDateTime &now)
{
    constexpr qint64 nsPerMs = 1'000'000;
    Cleaning cleaning(cache);
    if (days > 0) {
        const QDateTime cutoff = now.addDays(-std::min(days, qint64(36'500)));
        cleaning.removeOlderThan(cutoff.toMSecsSinceEpoch() * nsPerMs);
    }
    cleaning.removeUntil(limitBytes);
}

void clearCache(const CacheFolder &cache, const QString &kept)
{
    FolderWalk::removeEntries(cache.folder(), {CacheTag::fileName, QFile::encodeName(kept)},
                              cache.spared());
}

} // namespace tavelo
