// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/TransferSession.h"

#include "platform/TransferWorker.h"

namespace tavelo {

TransferSession::TransferSession(TransferDelegate &delegate, TransferOptions options)
    : m_worker(new TransferWorker(delegate, std::move(options)))
{
    m_worker->moveToThread(&m_thread);
    // Not deleted later: the thread's last round of deletions comes next, for what it leaves.
    QObject::connect(
        &m_thread, &QThread::finished, m_worker, [worker = m_worker] { delete worker; },
        Qt::DirectConnection);
    m_thread.setObjectName(QStringLiteral("transfers"));
    m_thread.start();
}

TransferSession::~TransferSession()
{
    m_thread.quit();
    m_thread.wait();
}

TransferId TransferSession::start(TransferRequest request)
{
    const TransferId id{++m_lastId};
    QMetaObject::invokeMethod(
        m_worker,
        [worker = m_worker, id, request = std::move(request)] { worker->start(id, request); },
        Qt::QueuedConnection);
    return id;
}

void TransferSession::cancel(TransferId id)
{
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, id] { worker->cancel(id); }, Qt::QueuedConnection);
}

void TransferSession::pause(TransferId id)
{
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, id] { worker->pause(id); }, Qt::QueuedConnection);
}

void TransferSession::discard(const QByteArray &token)
{
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, token] { worker->discard(token); }, Qt::QueuedConnection);
}

void TransferSession::sweep(const QString &folder)
{
    QMetaObject::invokeMethod(
        m_worker, [folder] { PartFile::sweep(folder); }, Qt::QueuedConnection);
}

} // namespace tavelo
