// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/SliceReceiver.h"

#include "platform/media/film/Film.h"

#include <utility>

namespace tavelo {

SliceReceiver::SliceReceiver(std::shared_ptr<Film> film, std::shared_ptr<Slice> slice)
    : m_film(std::move(film))
    , m_slice(std::move(slice))
{}

void SliceReceiver::redirected(const QUrl &to)
{
    m_film->led(to, m_slice->turn);
}

bool SliceReceiver::headArrived(const FetchHead &head)
{
    using enum FilmState::Verdict;
    m_verdict = m_film->state().judge(head, m_slice->span.first);
    m_slice->isWhole = m_verdict == Whole && m_film->takesWhole();
    if (m_slice->isWhole)
        m_slice->next = 0;
    const bool isTaken = m_verdict == Part || m_slice->isWhole;
    if (isTaken)
        m_film->answered(head.url);
    return isTaken;
}

FetchReceiver::Take SliceReceiver::bytesArrived(const char *bytes, qint64 count)
{
    // Of a server that knows no ranges: the only way to leave off what nobody has read yet.
    if (m_slice->isWhole && m_slice->next > m_film->wholeUpTo()) {
        m_slice->isPutOff = true;
        return Take::Later;
    }
    m_slice->isPutOff = false;
    m_slice->lastByte = Slice::Clock::now();
    if (m_slice->firstByte.load() == Slice::Clock::time_point())
        m_slice->firstByte = m_slice->lastByte.load();
    if (!m_film->state().take(m_slice->next, bytes, count)) {
        m_verdict = FilmState::Verdict::Changed;
        return Take::Stop;
    }
    m_slice->next += count;
    if (m_untold > 0)
        m_film->demand();
    m_untold -= count;
    return Take::More;
}

void SliceReceiver::ended(const FetchEnd &end)
{
    if (!end.error && m_slice->isWhole)
        m_film->state().endsAt(m_slice->next);
    m_film->ended(m_slice, end, m_verdict);
}

} // namespace tavelo
