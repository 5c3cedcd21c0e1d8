// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "torrent/TorrentInfo.h"

namespace tavelo::TorrentMetadata {

/// Reads a .torrent file's content (BEP 3; "path.utf-8" and "name.utf-8" as in the wild). The info
/// hash is over the bytes as they stand. Fails with TorrentParseError only; what is missing or
/// malformed inside reads as fewer files, no trackers, "Unnamed torrent".
Result<TorrentInfo> parseTorrent(const QByteArray &data);

/// Reads a magnet link (BEP 9) whose info hash is hexadecimal or base32 (RFC 4648, 6). Absent when
/// the text is no such link, or longer than 64 KiB.
std::optional<TorrentInfo> parseMagnet(const QString &text);

/// The bytes of a base32 text (RFC 4648, 6; unpadded, in either letter case) as lowercase
/// hexadecimal digits; bits that fill no byte are dropped. Absent for a character outside the
/// alphabet.
std::optional<QString> base32ToHex(const QString &text);

} // namespace tavelo::TorrentMetadata
