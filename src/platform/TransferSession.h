// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Transfer.h"
#include "platform/TransferDelegate.h"

#include <QThread>

#include <atomic>

namespace tavelo {

class TransferWorker;

/// Downloads HTTP bodies to files, on a thread of its own: network, disk and callbacks. At most six
/// transfers from one host run at a time; further ones wait for their turn.
///
/// Every operation may be called on any thread, also from a callback, and returns at once.
class TransferSession
{
public:
    /// The delegate must outlive the session.
    explicit TransferSession(TransferDelegate &delegate, TransferOptions options = {});

    /// Ends every transfer without a further callback and removes all part files, those of paused
    /// transfers too. Not to be called from a callback.
    ~TransferSession();
    Q_DISABLE_COPY_MOVE(TransferSession)

    /// With a token the transfer goes on where it was paused. When it cannot, because the token is
    /// not of this session or used up, or the file has changed here or on the server, it starts
    /// from the first byte.
    TransferId start(TransferRequest request);

    /// Ends with `completed`, unless the transfer is over already: then nothing happens.
    void cancel(TransferId id);

    /// Ends with `paused`, unless the transfer is over already: then nothing happens.
    void pause(TransferId id);

    /// Removes what a paused transfer keeps on disk. Its token is worth nothing afterwards.
    void discard(const QByteArray &token);

    /// Removes the part files that sessions of dead processes left in `folder`.
    void sweep(const QString &folder);

private:
    QThread m_thread;
    TransferWorker *m_worker; // lives and dies on the thread
    std::atomic<quint64> m_lastId = 0;
};

} // namespace tavelo
