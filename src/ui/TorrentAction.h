// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/MediaItem.h"
#include "catalogue/TorrentResult.h"

#include <QList>

namespace tavelo {

/// What can be done with a search result, in the order of its menu.
enum class TorrentAction {
    Details,
    InspectMagnet,
    OpenMagnet,
    CopyMagnet,
    InspectFile,
    OpenPage,
    CopyHash
};

/// Those for which the result has what they need.
QList<TorrentAction> actionsFor(const TorrentResult &result);
QString titleOf(TorrentAction action);

/// The catalogue item behind a result that has an archive identifier.
MediaItem catalogueItem(const TorrentResult &result);

} // namespace tavelo
