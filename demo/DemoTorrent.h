// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoMetainfo.h"

#include <QJsonObject>

namespace tavelo {

/// One release of an invented film, as torrents.json describes it.
struct DemoTorrent
{
    qint64 id = 0; // from 1, in the order of the description
    QString name;
    QJsonObject film; // title, year, genres, runtime and, where the catalogue has it, item
    QJsonObject listings;
    DemoMetainfo::Content content;
    DemoMetainfo metainfo;

    qint64 bytes() const;
    /// What `service` says of it: swarm, handle and so on; empty when it does not list it.
    QJsonObject on(const QString &service) const { return listings.value(service).toObject(); }
    QString filmTitle() const { return film.value(QLatin1String("title")).toString(); }
    /// With the year behind it.
    QString longFilmTitle() const;
    /// The film's name in addresses; not encoded.
    QString filmSlug() const;
    /// Where the demo's services have its .torrent file.
    QString filePath() const;
    /// Where they have a page about this release.
    QString pagePath() const;
};

} // namespace tavelo
