// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"
#include "platform/Result.h"

#include <QList>

namespace tavelo {

/// Reads an ApiBay search answer, in its order; rows without a usable name and hash are left out.
/// Errors: Malformed with the JSON parser's words; NetError::empty for anything but an array of
/// objects.
Result<QList<TorrentResult>> parseApiBay(const QByteArray &body, const QString &source);

} // namespace tavelo
