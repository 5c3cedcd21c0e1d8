// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/Fetch.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <optional>

namespace tavelo {

/// How many connections each host is given, and how long one that asks for it is left alone. Hosts
/// are named as the caller likes.
class HostBudget
{
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int mostConnections = 6;
    static constexpr int mostForFilms = 3;
    static constexpr std::chrono::seconds longestPause{60};

    bool mayStart(const QString &host, FetchUrgency urgency, Clock::time_point now) const;
    void started(const QString &host, FetchUrgency urgency);
    void ended(const QString &host, FetchUrgency urgency);
    int inUse(const QString &host) const;

    /// The host asks to be left alone, or takes no connections: for `asked`, else for 1, 2, 4 … 60
    /// seconds from one time to the next, give or take a fifth. Returns for how long.
    std::chrono::milliseconds
    refused(const QString &host, std::optional<std::chrono::seconds> asked, Clock::time_point now);
    /// The host answers as it should.
    void answered(const QString &host);

    /// It may be asked again at once, unless it has said for how long it may not.
    void forgive(const QString &host);

    /// Until when a host is left alone; absent when it is not.
    std::optional<Clock::time_point> pausedUntil(const QString &host, Clock::time_point now) const;
    /// When the next host may be asked again; absent when none is left alone.
    std::optional<Clock::time_point> nextEndOfPause(Clock::time_point now) const;

private:
    struct Host
    {
        int films = 0; // and probes
        int downloads = 0;
        int refusals = 0; // in a row
        Clock::time_point pausedUntil = {};
        bool hasAsked = false; // itself for the pause
    };

    QHash<QString, Host> m_hosts;
};

} // namespace tavelo
