// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/SubtitleTrack.h"

#include <QDir>

namespace tavelo {

namespace {

bool isSubtitle(const QFileInfo &file)
{
    const QString extension = file.suffix().toLower();
    return extension == QLatin1String("srt") || extension == QLatin1String("vtt");
}

} // namespace

QList<SubtitleTrack> siblingSubtitles(const QUrl &film)
{
    const QFileInfo video(film.toLocalFile());
    const QString baseName = video.completeBaseName();
    QList<SubtitleTrack> tracks;
    const auto entries = video.dir().entryInfoList(QDir::Files | QDir::Hidden, QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        if (isSubtitle(entry) && entry.fileName().startsWith(baseName))
            tracks.append({entry.fileName(), QUrl::fromLocalFile(entry.filePath())});
    }
    return tracks;
}

} // namespace tavelo
