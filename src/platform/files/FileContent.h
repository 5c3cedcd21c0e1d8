// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>

#include <functional>
#include <optional>

/// Small files of our own, read and written whole.
namespace tavelo::FileContent {

/// ErrorKind::Storage when `path` cannot be opened or read, Malformed when something else than a
/// regular file lies there, TooLarge when it holds more than `maxBytes`. Never waits for a pipe or
/// a device in its place.
Result<QByteArray> load(const QString &path, qint64 maxBytes);

/// The same, empty in place of an error.
QByteArray read(const QString &path, qint64 maxBytes);

/// Puts a file of this content, readable by its owner only, in place of what is at `path`; makes
/// the folders that are missing. The content is on disk before it is in place, and the place before
/// this returns, so that a power failure leaves the old file or the new one. `beforePlacing` runs
/// when all is written but not yet in place. What failed is of ErrorKind::Storage: then what was
/// there still is, unless only the last step failed.
std::optional<Error> put(const QString &path, const QByteArray &content,
                         const std::function<void()> &beforePlacing = {});

/// A folder's list of names is on disk when this returns nothing. ErrorKind::Storage.
std::optional<Error> syncFolder(const QString &folder);

/// As `put`; false when it fails.
bool replace(const QString &path, const QByteArray &content);

} // namespace tavelo::FileContent
