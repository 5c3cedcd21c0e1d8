// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Film.h"

#include <algorithm>
#include <utility>

// What becomes of what was asked for.

namespace tavelo {

using namespace std::chrono_literals;

namespace {

std::chrono::milliseconds delayAfter(int failures)
{
    // Quick while a viewer may be waiting, slow for a film left paused over a server that is gone.
    static constexpr std::chrono::milliseconds delays[] = {0s, 500ms, 1s, 1s, 1s, 1s, 2s, 5s};
    return delays[std::min<std::size_t>(static_cast<std::size_t>(failures), std::size(delays) - 1)];
}

/// That no later try will change.
bool isFinal(int status)
{
    constexpr int timeout = 408;
    constexpr int tooEarly = 425;
    constexpr int tooMany = 429;
    return status >= 300 && status < 500 && status != timeout && status != tooEarly &&
           status != tooMany;
}

} // namespace

void Film::answered(const QUrl &source)
{
    post([this, source] {
        m_nodes.found(source);
        look();
    });
}

void Film::led(const QUrl &to, int turn)
{
    post([this, to, turn] {
        m_nodes.led(to, turn);
        look();
    });
}

void Film::ended(const std::shared_ptr<Slice> &slice, const FetchEnd &end,
                 std::optional<FilmState::Verdict> verdict)
{
    post([this, slice, end, verdict] {
        if (std::erase(m_slices, slice) > 0)
            sliceEnded(*slice, end, verdict);
    });
}

void Film::sliceEnded(const Slice &slice, const FetchEnd &end,
                      std::optional<FilmState::Verdict> verdict)
{
    if (slice.isWhole)
        m_hasWhole = false;
    else if (verdict == FilmState::Verdict::Whole)
        return look(); // another one brings it
    if (slice.bytesSoFar() > 0)
        m_failures = 0;
    if (verdict == FilmState::Verdict::Changed)
        return contradicted();
    if (verdict == FilmState::Verdict::WrongPart && !m_nodes.refused(slice))
        return m_state->fail(tr("The server sent the wrong part of the film."));
    const int status = end.head ? end.head->status : 0;
    if (verdict == FilmState::Verdict::WrongPart) {
        m_state->setTrouble(tr("The server sent the wrong part of the film."), {});
    } else if (end.error || status > 299) {
        if (isFinal(status))
            refused(slice, status);
        else
            broken(slice, end);
    } else {
        if (!slice.isWhole)
            m_speed.measured(slice.bytesSoFar(),
                             std::chrono::duration_cast<std::chrono::microseconds>(
                                 slice.lastByte.load() - slice.firstByte.load()));
        m_state->setTrouble({}, {});
        m_isRecalled = false;
    }
    dropNeedless();
    look();
}

void Film::refused(const Slice &slice, int status)
{
    constexpr int rangeNotSatisfiable = 416;
    if (status == rangeNotSatisfiable)
        return outOfRange(slice);
    if (!m_nodes.refused(slice))
        m_state->fail(QStringLiteral("HTTP %1").arg(status));
}

void Film::outOfRange(const Slice &slice)
{
    const qint64 size = m_state->size().value_or(0);
    if (slice.span.first > 0 && slice.span.first >= size)
        return; // asked for before it was known how long the film is
    if (m_state->isConfirmed() || m_isRecalled)
        contradicted();
    else
        m_state->fail(tr("The file is empty."));
}

void Film::broken(const Slice &slice, const FetchEnd &end)
{
    m_nodes.failed(slice);
    m_countsView = m_countsView || (slice.counts && !end.head);
    const auto now = Clock::now();
    if (now < m_retryAt)
        return; // several that broke together broke once
    m_retryAt = now + std::max(delayAfter(m_failures++), end.pause);
    const int status = end.head ? end.head->status : 0;
    if (status > 0 && end.pause > 0ms)
        return m_state->setTrouble(tr("The Internet Archive asks to wait."), m_retryAt);
    m_state->setTrouble(end.error ? end.error->text : QStringLiteral("HTTP %1").arg(status), {});
}

/// What was kept may be of an earlier version; otherwise the film changed while it was watched.
void Film::contradicted()
{
    for (const auto &slice : std::exchange(m_slices, {}))
        letGo(*slice);
    if (!m_isRecalled)
        return m_state->fail(tr("The film was changed on the server."));
    m_isRecalled = false;
    m_wants.forgetIndex();
    m_state->outdate();
}

/// Of what two bring, the slower one.
void Film::dropNeedless()
{
    std::erase_if(m_slices, [this](const std::shared_ptr<Slice> &slice) {
        const ByteSpan rest = slice->rest();
        if (slice->isWhole || rest.isEmpty() || m_state->heldUpTo(rest.first, rest.end) < rest.end)
            return false;
        letGo(*slice);
        return true;
    });
}

} // namespace tavelo
