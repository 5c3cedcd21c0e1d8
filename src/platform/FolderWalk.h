// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

/// Long work on folders, for background threads. Symbolic links are never followed below the folder
/// that is named; what vanishes on the way, or cannot be read, is passed over.
namespace tavelo::FolderWalk {

struct File
{
    QByteArray path;       // as the file system has it
    qint64 allocated = 0;  // bytes on disk
    qint64 modifiedNs = 0; // since 1970-01-01 UTC
};

/// Calls `visit` for each regular file below `folder`, hidden ones included, in the file system's
/// order. False when the folder cannot be read at all.
bool files(const QString &folder, const std::function<void(const File &)> &visit);

/// The space of all regular files below `folder`, in bytes; 0 when it cannot be read.
qint64 directorySize(const QString &folder);

/// Removes the entries of `folder`, but the one named `kept`, with all they contain. A link goes,
/// not what it leads to.
void removeEntries(const QString &folder, const QString &kept);

/// What is free for the user on the volume of `path`, in bytes, or on that of the nearest folder
/// above it that exists; 0 when it cannot be told.
qint64 freeSpace(const QString &path);

} // namespace tavelo::FolderWalk
