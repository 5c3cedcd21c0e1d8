// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>

#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace tavelo {

/// What other threads want done on the thread that a libcurl multi handle belongs to. May outlive
/// the handle: what is asked for after `close` is dropped.
class CallQueue
{
public:
    explicit CallQueue(CURLM *multi)
        : m_multi(multi)
    {}

    /// Any thread.
    void post(std::function<void()> call)
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_multi)
            return;
        m_calls.push_back(std::move(call));
        curl_multi_wakeup(m_multi);
    }

    /// Ends the wait of the handle's thread; any thread.
    void wake()
    {
        const std::scoped_lock lock(m_mutex);
        if (m_multi)
            curl_multi_wakeup(m_multi);
    }

    std::vector<std::function<void()>> take()
    {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_calls, {});
    }

    void close()
    {
        const std::scoped_lock lock(m_mutex);
        m_multi = nullptr;
    }

private:
    std::mutex m_mutex;
    CURLM *m_multi;
    std::vector<std::function<void()>> m_calls;
};

} // namespace tavelo
