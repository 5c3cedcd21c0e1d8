// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>

#include <deque>

namespace tavelo {

class PosterResponse;

/// Lets a few posters load at a time, first come, first served. A list that flies past asks for
/// hundreds; most of them are cancelled while they wait, and cost nothing. Main thread only.
class PosterQueue
{
public:
    /// Less than the network has connections to one host, so that one is left for what matters
    /// more.
    static constexpr int atOnce = 5;
    /// From a host that sends many answers over one connection: a screen of them.
    static constexpr int atOnceMultiplexed = 24;

    static PosterQueue &shared();

    void add(PosterResponse *response);
    /// One that was started has ended.
    void ended();

private:
    void startNext();
    static int mostFrom(const PosterResponse &next);

    std::deque<QPointer<PosterResponse>> m_waiting;
    int m_running = 0;
    bool m_starting = false;
};

} // namespace tavelo
