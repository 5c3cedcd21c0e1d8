// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

namespace tavelo {

/// Which proxy the desktop, or else the environment, names for a host. Asking can take long (a
/// script is fetched and run), so it is done on the thread pool, once a minute for each host. For
/// one thread.
class ProxyBook
{
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::minutes shelfLife{1};

    /// As libcurl takes it ("http://host:port", "socks5h://host:port"); empty: none. Absent when it
    /// is to be asked first. This machine itself needs none.
    std::optional<QString> proxyFor(const QUrl &url, Clock::time_point now) const;
    /// `hand` runs what it is given on this book's thread; it is given one call, after which
    /// proxyFor knows.
    void ask(const QUrl &url, std::function<void(std::function<void()>)> hand);

private:
    struct Entry
    {
        QString proxy;
        Clock::time_point asked;
    };

    QHash<QString, Entry> m_entries; // by host
};

} // namespace tavelo
