// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/MediaItem.h"

#include <QStringList>

namespace tavelo {

/// The most frequent subjects of `items`, lowercased, of 3 to 23 characters; at most 10, the most
/// frequent first, among equals the one seen first. For background threads.
QStringList suggestionsFrom(const QList<MediaItem> &items);

} // namespace tavelo
