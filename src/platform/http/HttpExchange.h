// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/HttpClient.h"

#include <QElapsedTimer>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace tavelo {

/// One request on its way, redirects included. Emits `finished` exactly once, never from inside
/// the constructor.
class HttpExchange : public QObject
{
    Q_OBJECT

public:
    HttpExchange(QNetworkAccessManager *network, QNetworkRequest request,
                 std::chrono::milliseconds silenceLimit, std::stop_token stop, qint64 maxBytes);
    ~HttpExchange() override;

    /// Valid after `finished`.
    Result<HttpResponse> takeResult() { return std::move(*m_result); }

Q_SIGNALS:
    void finished();

private:
    void send();
    void sendNow();
    void readAvailable();
    void replyFinished();
    bool isCutShort() const;
    void redirect(const QByteArray &location);
    void noteConnection();
    void end(Result<HttpResponse> result);
    void log() const;
    void fail(ErrorKind kind, const QString &text) { end(Error{kind, text}); }

    const QPointer<QNetworkAccessManager> m_network;
    QNetworkRequest m_request;
    const qint64 m_maxBytes;
    std::unique_ptr<QNetworkReply, QScopedPointerDeleteLater> m_reply;
    int m_redirects = 0;
    QTimer m_silence;
    QElapsedTimer m_begun;
    QByteArray m_body;
    std::optional<bool> m_multiplexed; // all that came from the network so far
    std::optional<Result<HttpResponse>> m_result;
    std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace tavelo
