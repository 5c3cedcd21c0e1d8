// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"
#include "loopback/LoopbackCertificate.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>

namespace tavelo {

class HttpConnection;

/// An HTTP/1.1 service on this machine whose faults are exact to the byte. Connections are kept.
/// Lives on the thread that makes it; HttpServiceThread gives it one of its own.
class HttpService : public QObject
{
    Q_OBJECT

public:
    using Request = HttpRequest;
    using Answer = HttpAnswer;
    using Headers = HttpAnswer::Headers;
    using Framing = HttpAnswer::Framing;
    using Answering = std::function<Answer(const Request &)>;

    HttpService();
    /// At "localhost" or at an address such as "127.0.0.2", which to clients is another host; over
    /// TLS if there is a certificate.
    explicit HttpService(const QString &host,
                         const std::optional<LoopbackCertificate> &certificate = {});
    ~HttpService() override;

    QString base() const; // "http://127.0.0.1:1234"
    QUrl url(const QByteArray &path) const;

    /// What requests for `path` (encoded, without its query) get from now on; others get a 404.
    void serve(const QByteArray &path, Answer answer);
    /// What those of them get instead that ask for a range.
    void serveRange(const QByteArray &path, Answer answer)
    {
        m_rangeAnswers[path] = std::move(answer);
    }
    /// The same, for answers that depend on the request: its number, its connection.
    void serveBy(const QByteArray &path, Answering answering);
    /// What requests for all other paths get.
    void serveRest(Answering answering) { m_rest = std::move(answering); }
    void redirect(const QByteArray &path, const QByteArray &location, int status = 301);
    /// To change a thing or two about what is served; must be served already.
    Answer &at(const QByteArray &path);

    /// Closes the connections that wait for a request.
    void closeIdle();
    /// Refuses connections, or takes them again on the same port. Requests on their way are not
    /// touched; connections without one are closed.
    void setListening(bool listening);

    /// In the order of their arrival, those that got no answer included.
    const QList<Request> &requests() const { return m_requests; }
    qsizetype count(const std::function<bool(const Request &)> &matches) const;
    void forgetRequests() { m_requests.clear(); }

    /// Requests whose answer is not sent to its end, and whose connection is still there.
    qsizetype openRequests() const;
    /// Those that wait for a request included.
    qsizetype openConnections() const { return connections().size(); }
    /// Bytes of bodies that were handed to the system since the start.
    qint64 bytesSent() const { return m_bytesSent; }

Q_SIGNALS:
    void requested(); // before the answer is looked up

private:
    friend class HttpConnection;

    Answer answerTo(Request &request);
    Answer answerFor(const Request &request) const;
    void noteSent(qint64 bytes) { m_bytesSent += bytes; }
    void takeConnections();
    QList<HttpConnection *> connections() const;

    const QString m_host;
    const bool m_secure;
    const std::unique_ptr<QTcpServer> m_server;
    quint16 m_port = 0;
    std::unique_ptr<QTcpSocket> m_keepsPort;
    QHash<QByteArray, Answer> m_answers;
    QHash<QByteArray, Answer> m_rangeAnswers;
    QHash<QByteArray, Answering> m_answerings;
    Answering m_rest;
    QList<Request> m_requests;
    QHash<QByteArray, int> m_ordinals;
    int m_lastConnection = 0;
    qint64 m_bytesSent = 0;
};

} // namespace tavelo
