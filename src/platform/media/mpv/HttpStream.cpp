// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/HttpStream.h"

#include "platform/media/mpv/HttpStreamFetcher.h"

#include <algorithm>
#include <cstring>

namespace tavelo {

std::shared_ptr<HttpStream> HttpStream::open(const QUrl &url)
{
    const std::shared_ptr<HttpStream> stream(new HttpStream);
    stream->m_fetcher = HttpStreamFetcher::create(url, stream);
    return stream;
}

HttpStream::~HttpStream()
{
    m_fetcher->deleteLater();
}

bool HttpStream::atEnd() const
{
    return m_ended || (m_size && m_position >= *m_size);
}

qint64 HttpStream::read(char *to, qint64 most)
{
    std::unique_lock lock(m_mutex);
    const auto ready = [this] { return over() || m_position < windowEnd() || atEnd(); };
    if (!ready()) {
        m_starving.start();
        m_changed.wait(lock, ready);
        m_starving.invalidate();
    }
    if (m_cancelled)
        return -1;
    const qint64 available = windowEnd() - m_position;
    if (available <= 0)
        return over() ? -1 : 0;
    const qint64 count = std::min(available, most);
    std::memcpy(to, m_window.constData() + (m_position - m_windowStart),
                static_cast<std::size_t>(count));
    const bool wasFull = available >= windowAhead / 2;
    m_position += count;
    trim();
    if (wasFull && windowEnd() - m_position < windowAhead / 2)
        m_fetcher->post(&HttpStreamFetcher::pump);
    return count;
}

void HttpStream::trim()
{
    const qint64 behind = m_position - m_windowStart;
    if (behind < 2 * windowBehind)
        return;
    // Past the window when the reader jumped ahead of what has arrived.
    const qint64 drop = std::min<qint64>(behind - windowBehind, m_window.size());
    m_window.remove(0, drop);
    m_windowStart += drop;
}

std::optional<qint64> HttpStream::seek(qint64 offset)
{
    const std::scoped_lock lock(m_mutex);
    if (over() || offset < 0)
        return {};
    const bool inWindow = offset >= m_windowStart && offset <= windowEnd();
    // A server without ranges sends all that lies before in any case.
    const qint64 worthWaitingFor = m_opened && !m_ranges ? offset : windowAhead / 8;
    const bool justAhead = offset > windowEnd() && offset - windowEnd() <= worthWaitingFor;
    if (!inWindow && !justAhead)
        requestFrom(offset);
    m_position = offset;
    return offset;
}

void HttpStream::requestFrom(qint64 offset)
{
    m_window.clear();
    m_windowStart = offset;
    m_ended = false;
    ++m_generation;
    m_fetcher->post([offset, generation = m_generation](HttpStreamFetcher &fetcher) {
        fetcher.fetchFrom(offset, generation);
    });
}

std::optional<qint64> HttpStream::size()
{
    std::unique_lock lock(m_mutex);
    m_starving.start();
    m_changed.wait(lock, [this] { return over() || m_opened; });
    m_starving.invalidate();
    return m_size;
}

void HttpStream::cancel()
{
    const std::scoped_lock lock(m_mutex);
    m_cancelled = true;
    m_changed.notify_all();
}

QString HttpStream::error() const
{
    const std::scoped_lock lock(m_mutex);
    return m_error;
}

qint64 HttpStream::starvedFor() const
{
    const std::scoped_lock lock(m_mutex);
    return m_starving.isValid() ? m_starving.elapsed() : 0;
}

void HttpStream::fail(const QString &text)
{
    const std::scoped_lock lock(m_mutex);
    if (m_error.isEmpty())
        m_error = text;
    m_changed.notify_all();
}

void HttpStream::opened(std::optional<qint64> size, bool ranges)
{
    const std::scoped_lock lock(m_mutex);
    m_size = size;
    m_ranges = ranges;
    m_opened = true;
    m_changed.notify_all();
}

void HttpStream::append(const QByteArray &bytes, int generation)
{
    const std::scoped_lock lock(m_mutex);
    if (generation != m_generation)
        return;
    m_window += bytes;
    trim();
    if (m_starving.isValid())
        m_starving.restart();
    m_changed.notify_all();
}

void HttpStream::ended(int generation)
{
    const std::scoped_lock lock(m_mutex);
    if (generation != m_generation)
        return;
    m_ended = true;
    m_changed.notify_all();
}

bool HttpStream::isFull() const
{
    const std::scoped_lock lock(m_mutex);
    return windowEnd() - m_position >= windowAhead;
}

} // namespace tavelo
