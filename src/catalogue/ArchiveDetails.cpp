// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveDetails.h"

#include <initializer_list>

namespace tavelo {

namespace {

bool hasExtension(const ArchiveFile &file, std::initializer_list<const char *> extensions)
{
    const QString last = file.name.section(QLatin1Char('/'), -1);
    const qsizetype dot = last.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return false;
    const QString extension = last.sliced(dot + 1).toLower();
    return std::ranges::any_of(extensions,
                               [&](const char *one) { return extension == QLatin1String(one); });
}

QList<ArchiveFile> filesWith(const QList<ArchiveFile> &files,
                             std::initializer_list<const char *> extensions)
{
    QList<ArchiveFile> found;
    std::ranges::copy_if(files, std::back_inserter(found),
                         [&](const ArchiveFile &file) { return hasExtension(file, extensions); });
    return found;
}

} // namespace

QList<ArchiveFile> ArchiveDetails::playable() const
{
    return filesWith(files, {"mp4", "m4v", "mov"});
}

QList<ArchiveFile> ArchiveDetails::otherVideos() const
{
    return filesWith(files, {"mkv", "avi", "ogv", "webm", "mpeg", "mpg", "wmv", "flv"});
}

QList<ArchiveFile> ArchiveDetails::subtitles() const
{
    return filesWith(files, {"srt", "vtt"});
}

std::optional<ArchiveFile> ArchiveDetails::torrent() const
{
    const QList<ArchiveFile> torrents = filesWith(files, {"torrent"});
    return torrents.isEmpty() ? std::nullopt : std::optional(torrents.first());
}

QList<QUrl> ArchiveDetails::alternatives(const ArchiveFile &file) const
{
    QList<QUrl> urls;
    for (const QString &root : nodeRoots) {
        ArchiveFile there = file;
        there.itemRoot = root;
        urls.append(there.url());
    }
    return urls;
}

} // namespace tavelo
