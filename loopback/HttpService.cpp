// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"

#include "loopback/HttpConnection.h"

#include <QSslServer>

#include <algorithm>

namespace tavelo {

namespace {

std::unique_ptr<QTcpServer> serverWith(const std::optional<LoopbackCertificate> &certificate)
{
    if (!certificate)
        return std::make_unique<QTcpServer>();
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(certificate->configuration());
    return server;
}

QHostAddress addressOf(const QString &host)
{
    return host == QLatin1String("localhost") ? QHostAddress(QHostAddress::LocalHost)
                                              : QHostAddress(host);
}

} // namespace

HttpService::HttpService()
    : HttpService(QStringLiteral("127.0.0.1"))
{}

HttpService::HttpService(const QString &host, const std::optional<LoopbackCertificate> &certificate)
    : m_host(host)
    , m_secure(certificate)
    , m_server(serverWith(certificate))
{
    setListening(true);
    m_port = m_server->serverPort();
    connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this,
            &HttpService::takeConnections);
}

HttpService::~HttpService()
{
    qDeleteAll(connections()); // they still know the rest
}

QString HttpService::base() const
{
    return QStringLiteral("%1://%2:%3")
        .arg(QLatin1String(m_secure ? "https" : "http"), m_host)
        .arg(m_port);
}

QUrl HttpService::url(const QByteArray &path) const
{
    return QUrl(base() + QString::fromLatin1(path), QUrl::StrictMode);
}

void HttpService::serve(const QByteArray &path, Answer answer)
{
    m_answerings.remove(path);
    m_answers[path] = std::move(answer);
}

void HttpService::serveBy(const QByteArray &path, Answering answering)
{
    m_answerings[path] = std::move(answering);
}

void HttpService::redirect(const QByteArray &path, const QByteArray &location, int status)
{
    serve(path, {.status = status, .headers = {{"Location", location}}});
}

HttpService::Answer &HttpService::at(const QByteArray &path)
{
    Q_ASSERT(m_answers.contains(path));
    return m_answers[path];
}

void HttpService::closeIdle()
{
    for (HttpConnection *connection : connections()) {
        if (!connection->isBusy())
            connection->abort();
    }
}

void HttpService::setListening(bool listening)
{
    if (listening == m_server->isListening())
        return;
    if (!listening) {
        m_server->close();
        for (QTcpSocket *socket : m_server->findChildren<QTcpSocket *>())
            socket->abort();
        closeIdle();
        // A port that is bound and not listened on refuses, and nobody else can have it meanwhile.
        m_keepsPort = std::make_unique<QTcpSocket>();
        m_keepsPort->bind(addressOf(m_host), m_port, QAbstractSocket::ReuseAddressHint);
        return;
    }
    m_keepsPort.reset();
    if (!m_server->listen(addressOf(m_host), m_port))
        qFatal("No port to listen on: %s", qPrintable(m_server->errorString()));
}

void HttpService::takeConnections()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection())
        new HttpConnection(*this, socket, ++m_lastConnection);
}

qsizetype HttpService::count(const std::function<bool(const Request &)> &matches) const
{
    return std::ranges::count_if(m_requests, matches);
}

qsizetype HttpService::openRequests() const
{
    return std::ranges::count_if(connections(), &HttpConnection::isBusy);
}

QList<HttpConnection *> HttpService::connections() const
{
    return findChildren<HttpConnection *>(Qt::FindDirectChildrenOnly);
}

HttpService::Answer HttpService::answerTo(Request &request)
{
    request.ordinal = ++m_ordinals[request.encodedPath()];
    m_requests.append(request);
    Q_EMIT requested();
    return answerFor(request);
}

HttpService::Answer HttpService::answerFor(const Request &request) const
{
    const QByteArray path = request.encodedPath();
    if (request.headers.contains("range") && m_rangeAnswers.contains(path))
        return m_rangeAnswers[path];
    if (const auto answering = m_answerings.value(path))
        return answering(request);
    if (const auto answer = m_answers.constFind(path); answer != m_answers.constEnd())
        return *answer;
    return m_rest ? m_rest(request) : Answer::notFound();
}

} // namespace tavelo
