// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HostBudget.h"
#include "platform/media/film/Film.h"

#include <algorithm>

// What is done about requests that do not get on.

namespace tavelo {

using namespace std::chrono_literals;

namespace {

constexpr auto silenceUntilSecond = 2s; // until the same is asked for on another connection
constexpr auto silenceUntilItem = 4s;   // and of the item's own address
constexpr auto slownessUntilSecond = 4s;
constexpr qint64 mostSecondsShare = 8; // one second request in so many

} // namespace

/// Lets go of a request that brings nothing, and is not for the byte at `place`: a connection that
/// is silent cannot be kept. False when there is none.
bool Film::makeRoom(qint64 place)
{
    const auto silence = [place](const auto &slice) {
        return slice->rest().contains(place) ? Clock::duration(0) : slice->silentFor();
    };
    const auto silent = std::ranges::max_element(m_slices, {}, silence);
    if (silent == m_slices.end() || silence(*silent) < silenceUntilSecond)
        return false;
    letGo(**silent);
    m_slices.erase(silent);
    return true;
}

/// Whoever may answer from another node begins within what is held: that two nodes' files are one
/// film, bytes of both tell.
ByteSpan Film::withOverlap(const ByteSpan &span, Slice::Address address) const
{
    if (address == Slice::Address::Node || span.first == 0)
        return span;
    const qint64 before = span.first - 1;
    return {before - before % SliceCache::blockBytes, span.end};
}

void Film::startSecond(Slice &first, Slice::Address address)
{
    const auto second = std::make_shared<Slice>(withOverlap(first.rest(), address), address);
    second->isSecond = true;
    first.hasSecond = true;
    send(second);
}

/// A slice that does not get on is asked for once more beside it; the first to bring it wins.
void Film::helpOut(Slice &slice)
{
    if (slice.isSecond || slice.isWhole)
        return;
    const auto now = Clock::now();
    const auto silent = slice.silentFor();
    if (silent >= silenceUntilItem && !slice.askedItem) {
        const bool isUrgent =
            !m_wants.list().empty() && slice.rest().contains(m_wants.list().front().span.first);
        const bool hasRoom = static_cast<int>(m_slices.size()) < HostBudget::mostForFilms;
        if (!hasRoom && !(isUrgent && makeRoom(slice.next)))
            return;
        slice.askedItem = true;
        return startSecond(slice, Slice::Address::Item);
    }
    const auto began = slice.firstByte.load();
    const bool isSlow =
        began != Clock::time_point() && now - began >= slownessUntilSecond &&
        slice.bytesSoFar() * 3 <
            m_speed.median().value_or(0) *
                std::chrono::duration_cast<std::chrono::seconds>(now - began).count();
    if ((silent >= silenceUntilSecond || isSlow) && !slice.hasSecond && m_state->isConfirmed() &&
        m_seconds * mostSecondsShare <= m_started) {
        ++m_seconds;
        startSecond(slice, m_nodes.current());
    }
}

} // namespace tavelo
