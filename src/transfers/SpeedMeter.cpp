// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/SpeedMeter.h"

#include <cmath>

namespace tavelo {

namespace {

constexpr double leastSeconds = 0.5; // between two samples
constexpr double memorySeconds = 5;  // an older sample counts for a third or less

} // namespace

void SpeedMeter::take(qint64 bytes, Clock::time_point now)
{
    const double seconds = std::chrono::duration<double>(now - m_since).count();
    if (!m_bytes || bytes < *m_bytes) {
        m_speed = 0;
    } else if (seconds < leastSeconds) {
        return;
    } else {
        const double sample = double(bytes - *m_bytes) / seconds;
        const double kept = m_speed > 0 ? std::exp(-seconds / memorySeconds) : 0;
        m_speed = kept * m_speed + (1 - kept) * sample;
    }
    m_bytes = bytes;
    m_since = now;
}

std::optional<qint64> SpeedMeter::secondsFor(qint64 bytes) const
{
    constexpr double most = 1e9;
    const double seconds = m_speed < 1 ? most : double(bytes) / m_speed;
    return bytes >= 0 && seconds < most ? std::optional(static_cast<qint64>(std::ceil(seconds)))
                                        : std::nullopt;
}

} // namespace tavelo
