// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <chrono>
#include <deque>
#include <optional>
#include <vector>

namespace tavelo {

/// What one connection brings of a film, as its last slices tell.
class ConnectionSpeed
{
public:
    /// From a slice's first byte to its last.
    void measured(qint64 bytes, std::chrono::microseconds time)
    {
        if (bytes < leastBytes)
            return; // says more of the way there than of the speed
        m_speeds.push_back(bytes * 1'000'000 / std::max<qint64>(time.count(), 1000));
        if (m_speeds.size() > mostSpeeds)
            m_speeds.pop_front();
    }

    /// The median, in bytes a second; absent before the first slice.
    std::optional<qint64> median() const
    {
        if (m_speeds.empty())
            return {};
        std::vector<qint64> sorted(m_speeds.begin(), m_speeds.end());
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::ranges::nth_element(sorted, middle);
        return *middle;
    }

private:
    static constexpr qint64 leastBytes = 48LL * 1024;
    static constexpr std::size_t mostSpeeds = 9;

    std::deque<qint64> m_speeds;
};

} // namespace tavelo
