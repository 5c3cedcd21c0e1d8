// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/BodyHash.h"

#include <vector>

namespace tavelo {

namespace {

constexpr qint64 pieceBytes = 1024LL * 1024;

} // namespace

BodyHash::BodyHash(const PartFile &part, QCryptographicHash::Algorithm algorithm)
    : m_part(part)
    , m_hash(algorithm)
    , m_thread([this] { run(); })
{}

BodyHash::~BodyHash()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void BodyHash::advance(qint64 front)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (front - m_done < pieceBytes && front - m_front < pieceBytes) {
            m_front = front; // soon enough with the next piece
            return;
        }
        m_front = front;
    }
    m_changed.notify_all();
}

void BodyHash::restart()
{
    const std::scoped_lock lock(m_mutex);
    m_front = 0;
    m_done = 0;
    m_failed = false;
    m_restarting = true;
}

std::optional<QByteArray> BodyHash::wait(std::chrono::milliseconds most)
{
    std::unique_lock lock(m_mutex);
    m_changed.notify_all();
    const bool isDone = m_changed.wait_for(
        lock, most, [this] { return m_failed || (m_done == m_front && !m_restarting); });
    if (!isDone)
        return {};
    return m_failed ? QByteArray() : m_hash.result();
}

void BodyHash::run()
{
    std::vector<char> piece(pieceBytes);
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (std::exchange(m_restarting, false))
            m_hash.reset();
        const qint64 from = m_done;
        const qint64 count = std::min(m_front - from, pieceBytes);
        if (m_failed || count <= 0) {
            m_changed.notify_all();
            m_changed.wait(lock);
            continue;
        }
        lock.unlock();
        const qint64 taken = m_part.read(from, piece.data(), count);
        m_hash.addData(QByteArrayView(piece.data(), taken));
        lock.lock();
        if (m_restarting)
            continue;
        m_done += taken;
        m_failed = taken < count;
    }
}

} // namespace tavelo
