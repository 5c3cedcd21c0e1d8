// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <functional>

namespace tavelo {

/// The last component of a URL's path, decoded, with "_" for each "/". May be empty, "." or "..".
QString lastComponent(const QUrl &url);

/// The name that a download of `url` is saved under: its last component, decoded once more where it
/// was encoded twice.
QString downloadName(const QUrl &url);

/// The path of `name` in `folder`, or the first of "name 1.ext", "name 2.ext" … that is not taken.
QString freeDestination(const QString &folder, const QString &name,
                        const std::function<bool(const QString &path)> &isTaken);

/// Why the file system would have no file at `path`; empty when it would.
QString refusal(const QString &path);

} // namespace tavelo
