// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"

#include <QList>

namespace tavelo {

/// One result for each torrent, in the order in which they first occur. What several say of one is
/// the same torrent when their info hashes, or where there is none their ids, are equal: its
/// sources are united, its counts the larger ones, and what the first lacks of size and addresses
/// comes from the later.
QList<TorrentResult> mergeResults(const QList<TorrentResult> &results);

} // namespace tavelo
