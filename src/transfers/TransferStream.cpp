// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/TransferStream.h"

#include <utility>

namespace tavelo {

TransferStream::TransferStream(std::shared_ptr<TransferBell> bell)
    : m_bell(std::move(bell))
{
    m_bytes.reserve(bufferBytes);
}

TransferStream::News TransferStream::take(std::vector<char> &bytes)
{
    bytes.clear();
    m_bytes.swap(bytes);
    m_bytes.reserve(bufferBytes);
    return std::exchange(m_news, {});
}

void TransferStream::heldBack(std::chrono::milliseconds left)
{
    const std::scoped_lock lock(m_bell->mutex);
    m_news.heldBack = left;
    m_bell->ring();
}

bool TransferStream::headArrived(const FetchHead &head)
{
    const std::scoped_lock lock(m_bell->mutex);
    m_news.head = head;
    m_bell->ring();
    return true;
}

FetchReceiver::Take TransferStream::bytesArrived(const char *bytes, qint64 count)
{
    const std::scoped_lock lock(m_bell->mutex);
    if (m_bytes.size() + static_cast<size_t>(count) > bufferBytes) {
        m_news.wasPutOff = true;
        m_bell->ring();
        return Take::Later;
    }
    m_bytes.insert(m_bytes.end(), bytes, bytes + count);
    // What comes slowly is seen to now and then: not each of its pieces needs a write of its own.
    if (m_bytes.size() >= bufferBytes / 2)
        m_bell->ring();
    return Take::More;
}

void TransferStream::ended(const FetchEnd &end)
{
    const std::scoped_lock lock(m_bell->mutex);
    m_news.end = end;
    m_bell->ring();
}

} // namespace tavelo
