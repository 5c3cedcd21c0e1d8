// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterQueue.h"

#include "platform/http/HttpClient.h"
#include "ui/PosterResponse.h"

namespace tavelo {

PosterQueue &PosterQueue::shared()
{
    static PosterQueue queue;
    return queue;
}

void PosterQueue::add(PosterResponse *response)
{
    m_waiting.emplace_back(response);
    startNext();
}

void PosterQueue::ended()
{
    --m_running;
    startNext();
}

void PosterQueue::startNext()
{
    if (m_starting) // one that ends at once is followed by the loop below, not from within it
        return;
    m_starting = true;
    while (!m_waiting.empty()) {
        const QPointer<PosterResponse> next = m_waiting.front();
        const bool isWanted = next && !next->isOver();
        if (isWanted && m_running >= mostFrom(*next))
            break;
        m_waiting.pop_front();
        if (!isWanted)
            continue;
        ++m_running;
        next->load();
    }
    m_starting = false;
}

int PosterQueue::mostFrom(const PosterResponse &next)
{
    return HttpClient::shared().isMultiplexed(next.url()) ? atOnceMultiplexed : atOnce;
}

} // namespace tavelo
