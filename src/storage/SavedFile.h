// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QList>
#include <QUrl>

namespace tavelo {

/// One video file of the downloads folder.
struct SavedFile
{
    QUrl url;        // of a file
    qint64 size = 0; // bytes
    QDateTime added; // when it was created; the epoch's start when the file system does not know

    bool operator==(const SavedFile &) const = default;
};

/// The video files that lie in `folder` itself, latest first; hidden ones are left out. For
/// background threads.
QList<SavedFile> savedFilesIn(const QString &folder);

} // namespace tavelo
