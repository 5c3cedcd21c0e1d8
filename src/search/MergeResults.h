// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"

#include <QList>

namespace tavelo {

/// What results of one torrent have in common: the info hash in lower case, or the id where there
/// is none.
QString mergeKey(const TorrentResult &result);

/// One result for each torrent, in the order in which they first occur. What several say of one is
/// the same torrent when their merge keys are equal: its sources are united, its counts the larger
/// ones, and what the first lacks of size and addresses comes from the later.
QList<TorrentResult> mergeResults(const QList<TorrentResult> &results);

} // namespace tavelo
