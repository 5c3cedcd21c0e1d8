// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/HttpExchange.h"

namespace tavelo {

HttpExchange::HttpExchange(QNetworkReply *reply, std::chrono::milliseconds timeout,
                           std::stop_token stop)
    : m_reply(reply)
    , m_onStop(std::move(stop), [this] {
        // A stop may be requested on any thread, and while this object is being built.
        QMetaObject::invokeMethod(
            this, [this] { fail(ErrorKind::Cancelled, tr("The request was cancelled.")); },
            Qt::QueuedConnection);
    })
{
    m_reply->setParent(this);
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this,
            [this] { fail(ErrorKind::TimedOut, tr("The request timed out.")); });
    m_deadline.start(timeout);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpExchange::readAvailable);
    // Queued: a reply that is finished already must not end us before anyone listens.
    connect(m_reply, &QNetworkReply::finished, this, &HttpExchange::replyFinished,
            Qt::QueuedConnection);
    if (m_reply->isFinished())
        QMetaObject::invokeMethod(this, &HttpExchange::replyFinished, Qt::QueuedConnection);
}

HttpExchange::~HttpExchange() = default;

void HttpExchange::readAvailable()
{
    if (m_result)
        return;
    if (m_body.size() + m_reply->bytesAvailable() > HttpClient::maxBodyBytes)
        return fail(ErrorKind::TooLarge, tr("The response is larger than 64 MiB."));
    m_body += m_reply->readAll();
}

void HttpExchange::replyFinished()
{
    readAvailable();
    if (m_result)
        return;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // An error status is an answer; a connection that broke in the middle of one is not.
    const auto error = m_reply->error();
    const bool statusError = error >= QNetworkReply::ContentAccessDenied;
    if (error != QNetworkReply::NoError && !(statusError && status > 0))
        return fail(ErrorKind::Transport, m_reply->errorString());
    end(HttpResponse{std::move(m_body), status});
}

void HttpExchange::end(Result<HttpResponse> result)
{
    if (m_result)
        return;
    m_result = std::move(result);
    m_deadline.stop();
    m_reply->disconnect(this);
    Q_EMIT finished();
}

} // namespace tavelo
