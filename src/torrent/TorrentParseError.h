// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

namespace tavelo {

/// The one failure of reading a .torrent file; nothing tells its causes apart.
struct TorrentParseError : Error
{
    TorrentParseError()
        : Error{ErrorKind::Malformed, QStringLiteral("Not a valid .torrent file"), 0}
    {}
};

} // namespace tavelo
