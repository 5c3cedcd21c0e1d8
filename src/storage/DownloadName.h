// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <functional>

namespace tavelo {

/// The name that a download of `url` is saved under: the last component of its path, decoded twice
/// where it was encoded twice, without any "/". May be empty, "." or "..".
QString downloadName(const QUrl &url);

/// The path of `name` in `folder`, or the first of "name 1.ext", "name 2.ext" … that is not taken.
QString freeDestination(const QString &folder, const QString &name,
                        const std::function<bool(const QString &path)> &isTaken);

/// Why the file system would have no file at `path`; empty when it would.
QString refusal(const QString &path);

} // namespace tavelo
