// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"
#include "platform/http/HttpBody.h"
#include "platform/http/HttpHead.h"

#include <QTcpSocket>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <optional>

namespace tavelo {

/// One GET whose body is read as it arrives, over HTTP/1.1 on a connection of its own. Redirects
/// are followed, never from https to http.
///
/// Not a QNetworkReply: that one now and then takes a chunked body for whole whose connection
/// broke, and asks a second time when one breaks early.
class HttpDownload : public QObject
{
    Q_OBJECT

public:
    using Fields = QList<std::pair<QByteArray, QByteArray>>;

    /// `fields` go with every request. `silenceLimit` is how long the server may bring nothing,
    /// also while connecting.
    HttpDownload(QUrl url, Fields fields, std::chrono::milliseconds silenceLimit);
    ~HttpDownload() override;

    /// Whether it is an http or https address.
    static bool canFetch(const QUrl &url);

    void start();

    /// Where the answer comes from, after redirects.
    const QUrl &url() const { return m_url; }
    /// The final answer's; absent until it is there.
    const std::optional<HttpHead> &head() const { return m_head; }

    /// The body's length in bytes, when the head tells it; else -1.
    qint64 length() const { return m_body ? m_body->length() : -1; }

    /// Up to `most` bytes of the body, 0 when there are none at the moment.
    qint64 read(char *to, qint64 most);
    /// The body has been read to its end.
    bool isComplete() const { return m_body && m_body->isComplete(); }

Q_SIGNALS:
    /// The head is there, or bytes of the body, or its end.
    void advanced();
    /// Ends it; `advanced` has been told of all that came before.
    void failed(const tavelo::Error &error);

private:
    void sendRequest();
    void bytesArrived();
    void takeHead();
    qint64 readSocket(char *to, qint64 most);
    void redirectTo(const QByteArray &location);
    void fellSilent();
    void connectionEnding();
    void connectionEnded();
    void fail(ErrorKind kind, const QString &text);
    void close();

    QUrl m_url;
    Fields m_fields;
    QTimer m_silence;
    QTcpSocket *m_socket = nullptr; // a child
    QByteArray m_received;          // of the head, and what came with it
    std::optional<HttpHead> m_head;
    std::optional<HttpBody> m_body;
    int m_redirects = 0;
};

} // namespace tavelo
