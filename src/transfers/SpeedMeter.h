// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>
#include <optional>

namespace tavelo {

/// How fast something comes, smoothed over some seconds.
class SpeedMeter
{
public:
    using Clock = std::chrono::steady_clock;

    /// `bytes`: all that have come so far.
    void take(qint64 bytes, Clock::time_point now = Clock::now());
    /// Forgets all, for what comes next has nothing to do with it.
    void restart() { *this = {}; }

    /// Bytes a second; 0 until there is something to tell from.
    qint64 speed() const { return static_cast<qint64>(m_speed); }
    /// For so many bytes; absent when it cannot be told.
    std::optional<qint64> secondsFor(qint64 bytes) const;

private:
    std::optional<qint64> m_bytes = {};
    Clock::time_point m_since = {};
    double m_speed = 0;
};

} // namespace tavelo
