// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace tavelo {

class HttpStream;

/// Makes the requests of one HttpStream, on the network thread that all streams share.
class HttpStreamFetcher : public QObject
{
    Q_OBJECT

public:
    /// Main thread. Starts with the film's first byte. Ends with deleteLater().
    static HttpStreamFetcher *create(const QUrl &url, std::weak_ptr<HttpStream> stream);

    /// Any thread: runs `call` on the network thread.
    template <typename Call>
    void post(Call call)
    {
        QMetaObject::invokeMethod(
            this, [this, call] { std::invoke(call, *this); }, Qt::QueuedConnection);
    }

    void fetchFrom(qint64 offset, int generation);
    /// Moves what has arrived into the stream, as far as it has room.
    void pump();

private:
    HttpStreamFetcher(const QUrl &url, std::weak_ptr<HttpStream> stream);

    void request();
    void abandon();
    void headersArrived();
    void replyFinished();
    bool continues(const std::optional<qint64> &size) const;
    void retry();
    void permanentFailure(const QString &text);

    QUrl m_url;
    QUrl m_node; // where redirects led to the film, for as long as it answers; empty: ask m_url
    std::weak_ptr<HttpStream> m_stream;
    QNetworkAccessManager *m_network = nullptr;
    QPointer<QNetworkReply> m_reply;
    QTimer m_silence;    // runs while bytes are wanted; ends a connection that brings none
    QTimer m_retryDelay; // runs between a broken connection and the next one
    int m_failures = 0;  // since the last byte
    int m_generation = 0;
    qint64 m_offset = 0;     // of the next byte the reply brings
    qint64 m_skip = 0;       // bytes to pass over, on a server that ignored the range
    bool m_accepted = false; // the reply at hand carries the film
    bool m_opened = false;
    std::optional<qint64> m_size;
    QByteArray m_validator; // strong ETag, else Last-Modified, of the first answer
    QUrl m_source;          // of the first answer, after redirects
};

} // namespace tavelo
