// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QString>

namespace tavelo {

/// Removes from below `folder` the files modified more than `days` days before `now` (none when
/// `days` is not above 0), then the oldest of the rest until they take `limitBytes` at most. What
/// cannot be removed is passed over; folders stay. For background threads.
void cleanCache(const QString &folder, qint64 days, qint64 limitBytes, const QDateTime &now);

} // namespace tavelo
