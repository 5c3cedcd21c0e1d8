// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Transfer.h"
#include "platform/TransferDelegate.h"

#include <QObject>

#include <map>
#include <memory>
#include <vector>

namespace tavelo {

/// What a TransferSession keeps on its thread: the transfers on their way and the part files of the
/// paused ones. Made on any thread, used and destroyed on the session's.
class TransferWorker : public QObject
{
    Q_OBJECT

public:
    TransferWorker(TransferDelegate &delegate, TransferOptions options);
    ~TransferWorker() override;

    void start(TransferId id, const TransferRequest &request);
    void cancel(TransferId id);
    void pause(TransferId id);
    void discard(const QByteArray &token);

private:
    void runWaiting();
    std::unique_ptr<Transfer> take(TransferId id);
    std::unique_ptr<PartFile> takePart(const QString &path);
    TransferBody resumable(const TransferRequest &request);

    TransferDelegate &m_delegate;
    const TransferOptions m_options;
    std::vector<char> m_buffer;                            // that of whichever transfer is reading
    std::map<QString, std::unique_ptr<PartFile>> m_paused; // by their paths
    std::map<TransferId, std::unique_ptr<Transfer>> m_transfers;
    std::vector<TransferId> m_waiting; // those of them that have not begun
};

} // namespace tavelo
