// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoTorrent.h"

#include <QRegularExpression>

namespace tavelo {

qint64 DemoTorrent::bytes() const
{
    qint64 bytes = 0;
    for (const DemoMetainfo::File &file : content.files)
        bytes += file.bytes;
    return bytes;
}

QString DemoTorrent::longFilmTitle() const
{
    return QStringLiteral("%1 (%2)")
        .arg(filmTitle())
        .arg(film.value(QLatin1String("year")).toInt());
}

QString DemoTorrent::filmSlug() const
{
    static const QRegularExpression between(QStringLiteral("[^\\p{L}\\p{N}]+"));
    return longFilmTitle().toLower().split(between, Qt::SkipEmptyParts).join(QLatin1Char('-'));
}

QString DemoTorrent::filePath() const
{
    return QStringLiteral("/torrents/%1.torrent").arg(QLatin1String(metainfo.infoHash));
}

QString DemoTorrent::pagePath() const
{
    return QStringLiteral("/releases/%1").arg(QLatin1String(metainfo.infoHash));
}

} // namespace tavelo
