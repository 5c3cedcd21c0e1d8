// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentAction.h"

namespace tavelo {

QList<TorrentAction> actionsFor(const TorrentResult &result)
{
    using enum TorrentAction;
    QList<TorrentAction> actions;
    if (result.archiveID)
        actions << Details;
    if (result.magnet)
        actions << InspectMagnet << OpenMagnet << CopyMagnet;
    if (result.torrentURL)
        actions << InspectFile;
    if (result.pageURL)
        actions << OpenPage;
    if (result.infoHash)
        actions << CopyHash;
    return actions;
}

QString titleOf(TorrentAction action)
{
    using enum TorrentAction;
    switch (action) {
    case Details:
        return QStringLiteral("Details & Play…");
    case InspectMagnet:
        return QStringLiteral("Inspect Magnet");
    case OpenMagnet:
        return QStringLiteral("Open Magnet in Torrent App");
    case CopyMagnet:
        return QStringLiteral("Copy Magnet Link");
    case InspectFile:
        return QStringLiteral("Inspect .torrent File");
    case OpenPage:
        return QStringLiteral("Open Source Page");
    case CopyHash:
        return QStringLiteral("Copy Info Hash");
    }
    return {};
}

MediaItem catalogueItem(const TorrentResult &result)
{
    MediaItem item;
    item.id = result.archiveID.value_or(QString());
    item.title = result.title;
    item.year = result.year;
    item.licenseURL = result.license;
    return item;
}

} // namespace tavelo
