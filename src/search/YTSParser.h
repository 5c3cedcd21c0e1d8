// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"
#include "platform/Result.h"

#include <QList>

namespace tavelo {

/// Reads a YTS list of movies: one result a torrent, in the service's order; torrents without a
/// hash are left out. Errors: Malformed with the JSON parser's words; NetError::empty for anything
/// but an object with an object "data".
Result<QList<TorrentResult>> parseYTS(const QByteArray &body, const QString &source);

} // namespace tavelo
