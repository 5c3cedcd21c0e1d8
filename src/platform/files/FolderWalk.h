// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/OpenFolder.h"

#include <functional>
#include <vector>

/// Long work on folders, for background threads. Below the folder that is named no symbolic link is
/// followed, no other volume entered, nor any of the `spared` folders. What vanishes on the way, or
/// cannot be read, is passed over.
namespace tavelo::FolderWalk {

using Ids = std::vector<OpenFolder::Id>;

struct File
{
    QByteArray path;       // from the folder on, as the file system has it
    qint64 allocated = 0;  // bytes on disk
    qint64 modifiedNs = 0; // since 1970-01-01 UTC
};

/// Calls `visit` for each regular file below `folder`, hidden ones included, in the file system's
/// order.
void files(const OpenFolder &folder, const Ids &spared,
           const std::function<void(const File &)> &visit);

/// The space of all regular files below `folder`, in bytes; 0 when it is not open.
qint64 directorySize(const OpenFolder &folder, const Ids &spared = {});

/// Removes the file at `path` below `folder`. True when it is gone, also before.
bool removeFile(const OpenFolder &folder, const QByteArray &path, const Ids &spared);

/// Removes the entries of `folder`, but those of the names in `kept`, with all they contain. A link
/// goes, not what it leads to. The folders around what is spared stay.
void removeEntries(const OpenFolder &folder, const QByteArrayList &kept, const Ids &spared);

/// What is free for the user on the volume of `path`, in bytes, or on that of the nearest folder
/// above it that exists; 0 when it cannot be told.
qint64 freeSpace(const QString &path);

} // namespace tavelo::FolderWalk
