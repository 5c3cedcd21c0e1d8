// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpConnection.h"

#include "loopback/HttpService.h"

#include <QFuture>
#include <QSslSocket>
#include <QThreadPool>

#include <algorithm>

#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tavelo {

namespace {

using namespace std::chrono_literals;

using Making = std::function<QByteArray()>;

constexpr qint64 blockBytes = 256LL * 1024;
constexpr qint64 mostBuffered = 4 * blockBytes;
constexpr qsizetype mostRequestBytes = 64 * 1024;
constexpr auto tick = 10ms;

} // namespace

HttpConnection::HttpConnection(HttpService &service, QTcpSocket *socket, int number)
    : QObject(&service)
    , m_service(service)
    , m_socket(socket)
    , m_number(number)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_tick.setTimerType(Qt::PreciseTimer);
    connect(&m_tick, &QTimer::timeout, this, &HttpConnection::pump);
    connect(socket, &QTcpSocket::readyRead, this, &HttpConnection::read);
    connect(socket, &QTcpSocket::bytesWritten, this, &HttpConnection::pump);
    if (auto *secure = qobject_cast<QSslSocket *>(socket))
        connect(secure, &QSslSocket::encryptedBytesWritten, this, &HttpConnection::pump);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        m_busy = false;
        m_reply.reset();
        deleteLater();
    });
    read();
}

void HttpConnection::read()
{
    m_received += m_socket->readAll();
    if (m_busy)
        return;
    const qsizetype end = m_received.indexOf("\r\n\r\n");
    if (end < 0) {
        if (m_received.size() > mostRequestBytes)
            m_socket->abort();
        return;
    }
    HttpRequest request = HttpRequest::parsed(m_received.first(end));
    m_received.remove(0, end + 4);
    request.connection = m_number;
    request.secure = qobject_cast<QSslSocket *>(m_socket) != nullptr;
    request.arrival = std::chrono::steady_clock::now();
    m_busy = true;
    const HttpAnswer answer = m_service.answerTo(request);
    if (answer.silent)
        return;
    if (!answer.slowBody)
        return begin(request, answer);
    QtFuture::makeReadyFuture(answer.slowBody)
        .then(QThreadPool::globalInstance(), [](const Making &make) { return make(); })
        .then(this, [this, request, answer](const QByteArray &body) {
            HttpAnswer made = answer;
            made.body = body;
            begin(request, made);
        });
}

void HttpConnection::begin(const HttpRequest &request, HttpAnswer answer)
{
    const auto delay = answer.delay;
    const auto reply = [this, reply = HttpReply(std::move(answer), request)] {
        m_reply = reply;
        start();
    };
    if (delay > 0ms)
        QTimer::singleShot(delay, Qt::PreciseTimer, this, reply);
    else
        reply();
}

void HttpConnection::start()
{
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return;
    m_sent = 0;
    m_tailSent = false;
    m_clock.start();
    if (m_reply->answer().bytesPerSecond > 0)
        m_tick.start(tick);
    m_socket->write(m_reply->head());
    pump();
}

void HttpConnection::pump()
{
    while (m_reply && m_sent < m_reply->length() && buffered() < mostBuffered) {
        const qint64 count = std::min({blockBytes, m_reply->length() - m_sent, allowance()});
        if (count <= 0)
            return;
        const QByteArray bytes = m_reply->bytes(m_sent, count);
        if (bytes.size() < count)
            return m_socket->abort(); // a file that became shorter while it was sent
        m_sent += count;              // before the write, which may come back here
        m_service.noteSent(count);
        m_socket->write(bytes);
    }
    if (!m_reply || m_sent < m_reply->length() || m_reply->fallsSilent())
        return;
    if (!m_tailSent) {
        m_tailSent = true;
        m_socket->write(m_reply->tail());
    }
    if (m_reply && buffered() == 0)
        finish();
}

void HttpConnection::finish()
{
    m_tick.stop();
    if (m_reply->isCut() && m_reply->answer().reset)
        return reset();
    if (m_reply->closes())
        return m_socket->disconnectFromHost();
    m_reply.reset();
    m_busy = false;
    read();
}

// What the client has not taken yet would be lost with the connection.
void HttpConnection::reset()
{
    const auto handle = static_cast<int>(m_socket->socketDescriptor());
    int waiting = 0;
    if (ioctl(handle, SIOCOUTQ, &waiting) == 0 && waiting > 0)
        return QTimer::singleShot(tick, this, &HttpConnection::reset);
    const linger none{1, 0};
    setsockopt(handle, SOL_SOCKET, SO_LINGER, &none, sizeof none);
    m_socket->abort();
}

qint64 HttpConnection::allowance() const
{
    const qint64 rate = m_reply->answer().bytesPerSecond;
    return rate > 0 ? m_clock.elapsed() * rate / 1000 - m_sent : blockBytes;
}

qint64 HttpConnection::buffered() const
{
    const auto *secure = qobject_cast<const QSslSocket *>(m_socket);
    return m_socket->bytesToWrite() + (secure ? secure->encryptedBytesToWrite() : 0);
}

} // namespace tavelo
