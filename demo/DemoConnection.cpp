// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoConnection.h"

#include <QTimer>

#include <algorithm>

namespace tavelo {

namespace {

constexpr qint64 chunk = 64LL * 1024;
constexpr qint64 mostRequestBytes = 64LL * 1024;

DemoRequest parsed(const QByteArray &text)
{
    DemoRequest request;
    const QList<QByteArray> lines = text.split('\n');
    request.method = lines.first().split(' ').value(0);
    request.target = lines.first().split(' ').value(1);
    for (const QByteArray &line : lines.sliced(1)) {
        const QByteArray name = line.left(line.indexOf(':')).toLower();
        const QByteArray value = line.mid(line.indexOf(':') + 1).trimmed();
        if (name == "range")
            request.range = value;
        else if (name == "if-range")
            request.ifRange = value;
    }
    return request;
}

} // namespace

DemoConnection::DemoConnection(QTcpSocket *socket, Answer answer, Faults faults, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_answer(std::move(answer))
    , m_faults(std::move(faults))
{
    socket->setParent(this);
    connect(socket, &QTcpSocket::readyRead, this, &DemoConnection::readRequest);
    connect(socket, &QTcpSocket::bytesWritten, this, &DemoConnection::send);
    connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
}

void DemoConnection::readRequest()
{
    if (m_busy)
        return;
    const QByteArray text = m_socket->peek(mostRequestBytes);
    const qsizetype end = text.indexOf("\r\n\r\n");
    if (end < 0) {
        if (text.size() >= mostRequestBytes)
            m_socket->disconnectFromHost();
        return;
    }
    m_socket->skip(end + 4);
    const DemoRequest request = parsed(text.first(end));
    const DemoFaults faults = m_faults();
    const bool concerned = faults.concerns(request.target);
    m_busy = true;
    if (concerned && faults.silent)
        return;
    QTimer::singleShot(concerned ? faults.latency : 0, this, [this, request] { reply(request); });
}

void DemoConnection::reply(const DemoRequest &request)
{
    const DemoFaults faults = m_faults();
    const bool concerned = faults.concerns(request.target);
    m_reply = concerned && faults.status != 0
                  ? DemoReply::text(faults.status, "A fault of the demo.", "text/plain")
                  : m_answer(request);
    m_left = request.method == "HEAD" ? 0 : m_reply.length();
    m_closes = concerned && faults.dropAfter >= 0 && faults.dropAfter < m_left;
    m_socket->write(m_reply.head(!m_closes));
    if (m_closes)
        m_left = faults.dropAfter;
    send();
}

void DemoConnection::send()
{
    while (m_busy && m_left > 0 && m_socket->bytesToWrite() < 4 * chunk) {
        const qint64 count = std::min(m_left, chunk);
        const QByteArray bytes = m_reply.file
                                     ? m_reply.file->read(count)
                                     : m_reply.body.sliced(m_reply.body.size() - m_left, count);
        if (bytes.isEmpty())
            return m_socket->abort(); // the file became shorter while it was sent
        m_left -= bytes.size();
        m_socket->write(bytes);
    }
    if (m_busy && m_left == 0 && m_socket->bytesToWrite() == 0)
        bodySent();
}

void DemoConnection::bodySent()
{
    m_busy = false;
    m_reply = {};
    if (m_closes)
        return m_socket->disconnectFromHost();
    readRequest();
}

} // namespace tavelo
