// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/Fetch.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace tavelo {

/// What wakes a transfer's thread, and what guards all that comes from others to it.
struct TransferBell
{
    std::mutex mutex;
    std::condition_variable rung;
    bool isRinging = false; // there is something to see to at once

    /// With the mutex held.
    void ring()
    {
        isRinging = true;
        rung.notify_one();
    }
};

/// One answer on its way: takes its bytes on the fetch's thread into a buffer of limited size, from
/// which the transfer's thread takes them.
class TransferStream final : public FetchReceiver
{
public:
    static constexpr size_t bufferBytes = 1024UL * 1024; // one that is filled, one that is emptied

    struct News
    {
        std::optional<FetchHead> head = {};
        std::optional<FetchEnd> end = {};
        bool wasPutOff = false; // the fetch is to be resumed
        /// It has not begun, for its host is left alone for so long.
        std::optional<std::chrono::milliseconds> heldBack = {};
    };

    explicit TransferStream(std::shared_ptr<TransferBell> bell);

    /// What has come since the last time: the head, then `bytes`, then the end. The transfer's
    /// thread, with the bell's mutex held.
    News take(std::vector<char> &bytes);

    void heldBack(std::chrono::milliseconds left) override;
    bool headArrived(const FetchHead &head) override;
    Take bytesArrived(const char *bytes, qint64 count) override;
    void ended(const FetchEnd &end) override;

private:
    const std::shared_ptr<TransferBell> m_bell;
    News m_news;
    std::vector<char> m_bytes;
};

} // namespace tavelo
