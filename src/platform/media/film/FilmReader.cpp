// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmReader.h"

#include "platform/media/film/Film.h"

#include <algorithm>
#include <utility>

namespace tavelo {

using std::chrono::milliseconds;

namespace {

constexpr qint64 demandStep = 64LL * 1024; // bytes read until the film is told

milliseconds since(FilmReader::Clock::time_point start)
{
    return std::chrono::duration_cast<milliseconds>(FilmReader::Clock::now() - start);
}

} // namespace

FilmReader::FilmReader(std::shared_ptr<Film> film, double startAt)
    : m_film(std::move(film))
    , m_expected(startAt)
{}

FilmReader::~FilmReader()
{
    FilmReader::cancel();
}

bool FilmReader::hasSomething() const
{
    const FilmState &state = m_film->state();
    const auto size = state.size();
    return m_cancelled || (size && m_place >= *size) ||
           state.heldUpTo(m_place, m_place + 1) > m_place || !state.error().isEmpty();
}

qint64 FilmReader::read(char *to, qint64 most)
{
    if (!hasSomething()) {
        m_waitsSince = Clock::now();
        m_film->demand();
        m_film->state().wait([this] { return hasSomething(); });
        m_waitsSince = Clock::time_point();
    }
    if (m_cancelled)
        return -1;
    const qint64 count = m_film->state().read(m_place, to, most);
    if (count == 0)
        return m_film->state().error().isEmpty() ? 0 : -1;
    m_place += count;
    if (m_place - m_demanded >= demandStep)
        demandMore();
    return count;
}

std::optional<qint64> FilmReader::seek(qint64 offset)
{
    if (m_cancelled || !m_film->state().error().isEmpty() || offset < 0)
        return {};
    m_place = offset;
    demandMore();
    return offset;
}

std::optional<qint64> FilmReader::size()
{
    const FilmState &state = m_film->state();
    m_waitsSince = Clock::now();
    state.wait([&] { return m_cancelled || state.isOpened() || !state.error().isEmpty(); });
    m_waitsSince = Clock::time_point();
    return state.size();
}

void FilmReader::demandMore()
{
    m_demanded = m_place;
    m_film->demand();
}

void FilmReader::expect(double seconds)
{
    m_expected = seconds;
    ++m_expectations;
    m_film->demand();
}

void FilmReader::cancel()
{
    if (m_cancelled.exchange(true))
        return;
    m_film->state().wake();
    m_film->demand();
    if (m_shown >= 0)
        m_film->keep(m_shown);
}

QString FilmReader::error() const
{
    return m_film->state().error();
}

QString FilmReader::trouble() const
{
    return m_film->state().trouble();
}

QString FilmReader::wish() const
{
    return m_film->state().wish();
}

bool FilmReader::isOutdated() const
{
    return m_film->state().isOutdated();
}

milliseconds FilmReader::waitsFor() const
{
    const Clock::time_point start = m_waitsSince;
    return start == Clock::time_point() ? milliseconds(0) : since(start);
}

milliseconds FilmReader::starvedFor() const
{
    const Clock::time_point start = m_waitsSince;
    return start == Clock::time_point() ? milliseconds(0)
                                        : since(std::max(start, m_film->state().lastByte()));
}

} // namespace tavelo
