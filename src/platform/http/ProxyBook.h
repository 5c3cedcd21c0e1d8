// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QNetworkProxy>
#include <QUrl>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace tavelo {

/// Which proxy the desktop, or else the environment, names for a host: one answer for every client
/// of the program. Asking can take long (a script is fetched and run), so it is done on the thread
/// pool, once a minute for each host. Any thread.
class ProxyBook
{
public:
    static constexpr std::chrono::minutes shelfLife{1};

    static ProxyBook &shared();

    /// Of type NoProxy where there is none, as for this machine itself. Absent until it was asked
    /// for. One that is old is asked for again, and stands until the answer is there.
    std::optional<QNetworkProxy> proxyFor(const QUrl &url);
    /// Calls `then` once proxyFor knows: at once, or on a thread of the pool.
    void ask(const QUrl &url, std::function<void()> then);

    /// As libcurl takes it ("http://host:port", "socks5h://host:port"); empty: none.
    static QByteArray textOf(const QNetworkProxy &proxy);

private:
    using Clock = std::chrono::steady_clock;

    struct Entry
    {
        std::optional<QNetworkProxy> proxy = {};
        Clock::time_point asked = {};
        bool isAsked = false; // on its way
        std::vector<std::function<void()>> waiting = {};
    };

    void askAgain(Entry &entry, const QUrl &place);
    void answered(const QUrl &place, const QNetworkProxy &proxy);

    std::mutex m_mutex;
    QHash<QUrl, Entry> m_entries; // by scheme, host and port
};

} // namespace tavelo
