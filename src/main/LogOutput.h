// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <optional>

/// What happens, told to whoever asks for it: `--log`, or `--log=http,engine`.
namespace tavelo::LogOutput {

/// Takes the option out of a start's arguments; the last one counts. Returns the names of the
/// wanted categories, "*" for all; absent when nothing is wanted.
std::optional<QStringList> takeOption(QStringList &arguments);

/// From now on these categories are told on stderr, and in "tavelo.log" in `folder`, which is
/// created, as is every other message of the program. What was there is kept; before the file grows
/// past half of `mostBytes` it becomes "tavelo.previous.log" and a new one begins. Once, on the
/// main thread.
void start(const QStringList &categories, const QString &folder,
           qint64 mostBytes = 5LL * 1024 * 1024);

} // namespace tavelo::LogOutput
