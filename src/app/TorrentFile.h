// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "torrent/TorrentInfo.h"

/// .torrent files on this machine. For background threads.
namespace tavelo::TorrentFile {

/// What the file at `path` says, with its address. Errors: ErrorKind::Storage when it cannot be
/// read, else TorrentParseError.
Result<TorrentInfo> read(const QString &path);

/// What fetched bytes say. A copy of them stays in a folder of `folder` that is named by the info
/// hash, so that no other torrent takes its place, under `name` and ".torrent", or the hash where
/// no file can have that name. The address is the copy's, also when it could not be written.
Result<TorrentInfo> keep(const QByteArray &bytes, const QString &folder, const QString &name);

/// Why the file at `path` is not the torrent of that info hash; absent when it is.
std::optional<Error> mismatch(const QString &path, const QString &infoHash);

} // namespace tavelo::TorrentFile
