// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/Checksum.h"
#include "platform/files/PartFile.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tavelo {

/// The hash of a part file, which follows its front on a thread of its own. It reads what was
/// written, so that the writing need not wait for it, and what an earlier run has written is no
/// special case.
class BodyHash
{
public:
    /// `part` must outlive this.
    BodyHash(const PartFile &part, QCryptographicHash::Algorithm algorithm);
    ~BodyHash();
    Q_DISABLE_COPY_MOVE(BodyHash)

    /// The file's bytes before `front` are there, and do not change any more.
    void advance(qint64 front);
    /// They are not: it begins anew.
    void restart();
    /// The hash of all bytes before the front; absent when that takes longer, and empty when the
    /// file could not be read.
    std::optional<QByteArray> wait(std::chrono::milliseconds most);

private:
    void run();

    const PartFile &m_part;
    QCryptographicHash m_hash;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    qint64 m_front = 0;
    qint64 m_done = 0;
    bool m_failed = false;
    bool m_restarting = false;
    bool m_stopping = false;
    std::thread m_thread; // goes first
};

} // namespace tavelo
