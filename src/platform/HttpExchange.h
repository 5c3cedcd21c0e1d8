// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpClient.h"

#include <QNetworkReply>
#include <QTimer>

#include <functional>
#include <optional>

namespace tavelo {

/// One request on its way. Emits `finished` exactly once, never from inside the constructor.
class HttpExchange : public QObject
{
    Q_OBJECT

public:
    HttpExchange(QNetworkReply *reply, std::chrono::milliseconds timeout, std::stop_token stop);
    ~HttpExchange() override;

    /// Valid after `finished`.
    Result<HttpResponse> takeResult() { return std::move(*m_result); }

Q_SIGNALS:
    void finished();

private:
    void readAvailable();
    void replyFinished();
    void end(Result<HttpResponse> result);
    void fail(ErrorKind kind, const QString &text) { end(Error{kind, text}); }

    QNetworkReply *m_reply;
    QTimer m_deadline;
    QByteArray m_body;
    std::optional<Result<HttpResponse>> m_result;
    std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace tavelo
