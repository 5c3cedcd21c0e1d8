// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/TransferWorker.h"

#include "platform/ResumeToken.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tavelo {

namespace {

constexpr size_t bufferBytes = 1024UL * 1024;
constexpr int mostConnections = 6; // to one host

} // namespace

TransferWorker::TransferWorker(TransferDelegate &delegate, TransferOptions options)
    : m_delegate(delegate)
    , m_options(std::move(options))
    , m_buffer(bufferBytes)
{}

TransferWorker::~TransferWorker() = default;

void TransferWorker::start(TransferId id, const TransferRequest &request)
{
    auto transfer = std::make_unique<Transfer>(
        TransferInfo{id, request.description}, request.url, request.folder,
        TransferContext{m_delegate, m_options, m_buffer}, resumable(request));
    connect(transfer.get(), &Transfer::ended, this, [this, id] {
        take(id).release()->deleteLater(); // it is its own signal
    });
    m_transfers[id] = std::move(transfer);
    m_waiting.push_back(id);
    runWaiting();
}

void TransferWorker::cancel(TransferId id)
{
    auto transfer = take(id);
    if (!transfer)
        return;
    const TransferInfo info = transfer->info();
    transfer.reset();
    m_delegate.completed(info, Error{ErrorKind::Cancelled, tr("The transfer was cancelled.")});
}

void TransferWorker::pause(TransferId id)
{
    auto transfer = take(id);
    if (!transfer)
        return;
    TransferBody body = transfer->stop();
    const TransferInfo info = transfer->info();
    const QUrl url = transfer->url();
    transfer.reset();
    if (!body.part)
        return m_delegate.paused(info, {});
    const QString path = body.part->path();
    const ResumeToken token{url, path, body.part->size(), std::move(body.version)};
    m_paused[path] = std::move(body.part);
    m_delegate.paused(info, token.toBytes());
}

void TransferWorker::discard(const QByteArray &token)
{
    if (const auto read = ResumeToken::fromBytes(token))
        takePart(read->partPath);
}

std::unique_ptr<Transfer> TransferWorker::take(TransferId id)
{
    auto node = m_transfers.extract(id);
    if (!node)
        return nullptr;
    std::erase(m_waiting, id);
    // Later, for the transfer's last callback may be still to come.
    QMetaObject::invokeMethod(this, &TransferWorker::runWaiting, Qt::QueuedConnection);
    return std::move(node.mapped());
}

/// Begins those whose host has a connection to spare, first come, first served.
void TransferWorker::runWaiting()
{
    std::map<QString, int> connections;
    for (const auto &[id, transfer] : m_transfers)
        connections[transfer->url().host()] += std::ranges::count(m_waiting, id) == 0;
    const auto waiting = m_waiting;
    for (const TransferId id : waiting) {
        const auto &transfer = m_transfers.at(id);
        if (++connections[transfer->url().host()] > mostConnections)
            continue;
        std::erase(m_waiting, id);
        transfer->begin();
    }
}

std::unique_ptr<PartFile> TransferWorker::takePart(const QString &path)
{
    auto node = m_paused.extract(path);
    return node ? std::move(node.mapped()) : nullptr;
}

TransferBody TransferWorker::resumable(const TransferRequest &request)
{
    const auto token = ResumeToken::fromBytes(request.token);
    if (!token || token->url != request.url ||
        QFileInfo(token->partPath).path() != QDir::cleanPath(request.folder))
        return {};
    auto part = takePart(token->partPath);
    if (!part || part->size() != token->length || !part->isUntouched())
        return {};
    return {token->version, std::move(part)};
}

} // namespace tavelo
