// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>

/// Small files of our own, read and written whole.
namespace tavelo::FileContent {

/// ErrorKind::Storage when there is no regular file at `path`, or it cannot be read, or is larger
/// than `maxBytes`. Never waits for a pipe or a device in its place.
Result<QByteArray> load(const QString &path, qint64 maxBytes);

/// The same, empty in place of an error.
QByteArray read(const QString &path, qint64 maxBytes);

/// Puts a file of this content, readable by its owner only, in place of what is at `path`, with its
/// data on disk before it is; makes the folders that are missing. False when it fails: then what
/// was there still is.
bool replace(const QString &path, const QByteArray &content);

} // namespace tavelo::FileContent
