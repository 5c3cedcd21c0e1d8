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
    /// As many as the network has connections to one host.
    static constexpr int atOnce = 6;

    static PosterQueue &shared();

    void add(PosterResponse *response);
    /// One that was started has ended.
    void ended();

private:
    void startNext();

    std::deque<QPointer<PosterResponse>> m_waiting;
    int m_running = 0;
    bool m_starting = false;
};

} // namespace tavelo
