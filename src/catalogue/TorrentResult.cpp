// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/TorrentResult.h"

#include <array>

namespace tavelo {

namespace {

struct Mark
{
    QLatin1String pattern;
    QLatin1String label;
};

constexpr std::array qualities{Mark{QLatin1String("2160p"), QLatin1String("2160p")},
                               Mark{QLatin1String("4k"), QLatin1String("2160p")},
                               Mark{QLatin1String("1080p"), QLatin1String("1080p")},
                               Mark{QLatin1String("720p"), QLatin1String("720p")},
                               Mark{QLatin1String("480p"), QLatin1String("480p")},
                               Mark{QLatin1String("dvdrip"), QLatin1String("SD")},
                               Mark{QLatin1String("brrip"), QLatin1String("HD")}};

constexpr std::array formats{QLatin1String("mkv"), QLatin1String("mp4"), QLatin1String("avi"),
                             QLatin1String("m4v"), QLatin1String("mov"), QLatin1String("webm"),
                             QLatin1String("ogv")};

QString unknown()
{
    return QStringLiteral("\u2014");
}

} // namespace

QString TorrentResult::sourceSort() const
{
    QStringList sorted = sources;
    sorted.sort();
    return sorted.join(QLatin1String(", "));
}

QString TorrentResult::quality() const
{
    const QString lower = title.toLower();
    for (const Mark &mark : qualities) {
        if (lower.contains(mark.pattern))
            return mark.label;
    }
    return unknown();
}

QString TorrentResult::format() const
{
    const QString lower = title.toLower();
    for (const QLatin1String pattern : formats) {
        if (lower.contains(pattern))
            return pattern;
    }
    return archiveID ? QStringLiteral("mp4") : unknown();
}

} // namespace tavelo
