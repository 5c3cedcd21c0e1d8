// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpDownload.h"

#include "platform/http/WebAddress.h"

#include <QSslSocket>

#include <algorithm>
#include <cstring>
#include <utility>

namespace tavelo {

namespace {

constexpr qint64 networkBuffer = 4LL * 1024 * 1024; // bytes decrypted ahead
constexpr int mostRedirects = 20;

bool isSecure(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

bool isRedirect(int status)
{
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

QByteArray hostField(const QUrl &url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host + ']';
    return url.port() < 0 ? host : host + ':' + QByteArray::number(url.port());
}

QByteArray targetOf(const QUrl &url)
{
    const QByteArray target =
        url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
    return target.startsWith('/') ? target : '/' + target;
}

/// Places past the empty line that ends a head; -1 when it is not there.
qsizetype endOfHead(const QByteArray &text)
{
    const qsizetype end = text.indexOf("\r\n\r\n");
    return end < 0 ? -1 : end + 4;
}

} // namespace

bool HttpDownload::canFetch(const QUrl &url)
{
    return isWebAddress(url);
}

HttpDownload::HttpDownload(QUrl url, Fields fields, std::chrono::milliseconds silenceLimit)
    : m_url(std::move(url))
    , m_fields(std::move(fields))
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(silenceLimit);
    connect(&m_silence, &QTimer::timeout, this, &HttpDownload::fellSilent);
}

HttpDownload::~HttpDownload() = default;

void HttpDownload::start()
{
    auto *secure = isSecure(m_url) ? new QSslSocket(this) : nullptr;
    m_socket = secure ? secure : new QTcpSocket(this);
    connect(m_socket, &QTcpSocket::readyRead, this, &HttpDownload::bytesArrived);
    connect(m_socket, &QTcpSocket::errorOccurred, this, &HttpDownload::connectionEnding);
    m_silence.start();
    const quint16 port = static_cast<quint16>(m_url.port(secure ? 443 : 80));
    if (secure) {
        secure->setReadBufferSize(networkBuffer);
        connect(secure, &QSslSocket::encrypted, this, &HttpDownload::sendRequest);
        secure->connectToHostEncrypted(m_url.host(), port);
    } else {
        connect(m_socket, &QTcpSocket::connected, this, &HttpDownload::sendRequest);
        // What is read is written at once: a buffer between would only be one more copy.
        m_socket->connectToHost(m_url.host(), port, QIODevice::ReadWrite | QIODevice::Unbuffered);
    }
}

void HttpDownload::sendRequest()
{
    QByteArray request = "GET " + targetOf(m_url) + " HTTP/1.1\r\nHost: " + hostField(m_url) +
                         "\r\nConnection: close\r\n";
    for (const auto &[name, value] : m_fields)
        request += name + ": " + value + "\r\n";
    m_socket->write(request + "\r\n");
    m_silence.start();
}

void HttpDownload::bytesArrived()
{
    m_silence.start();
    if (!m_head)
        takeHead();
    if (m_head)
        Q_EMIT advanced();
}

void HttpDownload::takeHead()
{
    const qsizetype before = m_received.size();
    m_received.resize(HttpHead::maxBytes);
    const qint64 count = readSocket(m_received.data() + before, m_received.size() - before);
    m_received.truncate(before + count);
    for (qsizetype end = 0; (end = endOfHead(m_received)) > 0;) {
        const auto head = HttpHead::parse(m_received.first(end));
        const auto body = head ? HttpBody::of(*head) : std::nullopt;
        m_received.remove(0, end);
        if (!body)
            return fail(ErrorKind::Transport, tr("The server's answer cannot be understood."));
        if (head->status < 200)
            continue; // more is to come before the answer proper
        if (const auto to = head->field("location"); isRedirect(head->status) && !to.isEmpty())
            return redirectTo(to);
        m_head = head;
        m_body = body;
        return;
    }
    if (m_received.size() >= HttpHead::maxBytes)
        fail(ErrorKind::Transport, tr("The server's answer cannot be understood."));
}

void HttpDownload::redirectTo(const QByteArray &location)
{
    const QUrl target = m_url.resolved(QUrl::fromEncoded(location));
    if (!canFetch(target) || (isSecure(m_url) && !isSecure(target)))
        return fail(ErrorKind::Transport,
                    tr("The server redirects to an address that is not safe."));
    if (++m_redirects > mostRedirects)
        return fail(ErrorKind::Transport, tr("The server redirects without end."));
    close();
    m_url = target;
    start();
}

qint64 HttpDownload::read(char *to, qint64 most)
{
    while (m_socket && m_body && !isComplete()) {
        qint64 count = std::min<qint64>(most, m_received.size());
        if (count > 0) {
            std::memcpy(to, m_received.constData(), static_cast<size_t>(count));
            m_received.remove(0, count);
        } else {
            count = readSocket(to, most);
        }
        if (count <= 0)
            return 0;
        count = m_body->decode(to, count);
        if (count < 0)
            fail(ErrorKind::Transport, tr("The server's answer cannot be understood."));
        if (count != 0)
            return std::max<qint64>(count, 0);
    }
    return 0;
}

/// An unbuffered socket does not tell of its end but by a read that fails.
qint64 HttpDownload::readSocket(char *to, qint64 most)
{
    const qint64 count = m_socket->read(to, most);
    if (count < 0)
        connectionEnding();
    return std::max<qint64>(count, 0);
}

void HttpDownload::fellSilent()
{
    // This thread may have been held up by the disk while bytes came.
    if (m_socket->state() == QAbstractSocket::ConnectedState && m_socket->bytesAvailable() > 0)
        return bytesArrived();
    fail(ErrorKind::TimedOut, tr("The server stopped answering."));
}

/// Judged later: the socket may still have to decrypt what a full buffer held back.
void HttpDownload::connectionEnding()
{
    const auto judge = [this, socket = m_socket] {
        if (socket == m_socket)
            connectionEnded();
    };
    QMetaObject::invokeMethod(this, judge, Qt::QueuedConnection);
}

void HttpDownload::connectionEnded()
{
    const auto *socket = m_socket;
    if (qobject_cast<const QSslSocket *>(socket) && socket->bytesAvailable() > 0) {
        bytesArrived();
        if (m_socket == socket)
            connectionEnding();
        return;
    }
    const bool closed = socket->error() == QAbstractSocket::RemoteHostClosedError;
    if (m_body && closed)
        m_body->connectionEnded();
    if (isComplete())
        Q_EMIT advanced();
    else
        fail(ErrorKind::Transport,
             closed ? tr("The connection ended before the file did.") : socket->errorString());
}

void HttpDownload::fail(ErrorKind kind, const QString &text)
{
    close();
    Q_EMIT failed({kind, text});
}

void HttpDownload::close()
{
    m_silence.stop();
    m_received.clear();
    if (!m_socket)
        return;
    m_socket->disconnect(this);
    std::exchange(m_socket, nullptr)->deleteLater(); // not here, where it may be telling us things
}

} // namespace tavelo
