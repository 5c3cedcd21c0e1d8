// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HostBudget.h"

#include <QRandomGenerator>

#include <algorithm>

namespace tavelo {

namespace {

bool isForDownload(FetchUrgency urgency)
{
    return urgency == FetchUrgency::Download;
}

} // namespace

bool HostBudget::mayStart(const QString &host, FetchUrgency urgency, Clock::time_point now) const
{
    const Host known = m_hosts.value(host);
    return known.pausedUntil <= now && known.films + known.downloads < mostConnections &&
           (isForDownload(urgency) || known.films < mostForFilms);
}

void HostBudget::started(const QString &host, FetchUrgency urgency)
{
    Host &known = m_hosts[host];
    ++(isForDownload(urgency) ? known.downloads : known.films);
}

void HostBudget::ended(const QString &host, FetchUrgency urgency)
{
    Host &known = m_hosts[host];
    --(isForDownload(urgency) ? known.downloads : known.films);
}

int HostBudget::inUse(const QString &host) const
{
    const Host known = m_hosts.value(host);
    return known.films + known.downloads;
}

std::chrono::milliseconds HostBudget::refused(const QString &host,
                                              std::optional<std::chrono::seconds> asked,
                                              Clock::time_point now)
{
    Host &known = m_hosts[host];
    // Several requests that were refused together are one refusal.
    if (known.pausedUntil > now && !asked)
        return std::chrono::ceil<std::chrono::milliseconds>(known.pausedUntil - now);
    constexpr int mostDoublings = 6;
    std::chrono::milliseconds pause = std::min<std::chrono::milliseconds>(
        std::chrono::seconds(1 << known.refusals), longestPause);
    known.refusals = std::min(known.refusals + 1, mostDoublings);
    if (asked)
        pause = std::clamp<std::chrono::milliseconds>(*asked, std::chrono::seconds(1),
                                                      std::chrono::hours(1));
    else
        pause = pause * QRandomGenerator::global()->bounded(80, 121) / 100;
    known.pausedUntil = std::max(known.pausedUntil, now + pause);
    known.hasAsked = asked.has_value();
    return pause;
}

void HostBudget::answered(const QString &host)
{
    m_hosts[host].refusals = 0;
}

void HostBudget::forgive(const QString &host)
{
    Host &known = m_hosts[host];
    if (known.hasAsked)
        return;
    known.pausedUntil = {};
    known.refusals = 0;
}

std::optional<HostBudget::Clock::time_point> HostBudget::pausedUntil(const QString &host,
                                                                     Clock::time_point now) const
{
    const Host known = m_hosts.value(host);
    return known.pausedUntil > now ? std::optional(known.pausedUntil) : std::nullopt;
}

std::optional<HostBudget::Clock::time_point> HostBudget::nextEndOfPause(Clock::time_point now) const
{
    std::optional<Clock::time_point> next;
    for (const Host &host : m_hosts) {
        if (host.pausedUntil > now && (!next || host.pausedUntil < *next))
            next = host.pausedUntil;
    }
    return next;
}

} // namespace tavelo
