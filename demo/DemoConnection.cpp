// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoConnection.h"

#include <algorithm>

namespace tavelo {

namespace {

constexpr qint64 chunk = 64LL * 1024;
constexpr qint64 mostRequestBytes = 64LL * 1024;
constexpr int pause = 20; // milliseconds

} // namespace

DemoConnection::DemoConnection(QTcpSocket *socket, const DemoRoutes &routes, DemoControls &controls,
                               QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_routes(routes)
    , m_controls(controls)
{
    socket->setParent(this);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_pause.setSingleShot(true);
    m_pause.setTimerType(Qt::PreciseTimer);
    connect(&m_pause, &QTimer::timeout, this, &DemoConnection::send);
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
    m_request = DemoRequest::parsed(text.first(end));
    m_controls.record(m_request);
    m_busy = true;
    const DemoFaults faults = m_controls.faultsFor(m_request.target);
    if (!faults.silent)
        QTimer::singleShot(faults.latency, this, &DemoConnection::reply);
}

void DemoConnection::reply()
{
    const DemoFaults faults = m_controls.faultsFor(m_request.target);
    m_reply = faults.status != 0
                  ? DemoReply::text(faults.status, "A fault of the demo.", "text/plain")
                  : m_routes.answer(m_request);
    QTimer::singleShot(m_reply.latency, this, &DemoConnection::sendHead);
}

void DemoConnection::sendHead()
{
    const DemoFaults faults = m_controls.faultsFor(m_request.target);
    m_left = m_request.method == "HEAD" || m_reply.status == 304 ? 0 : m_reply.length();
    const bool drops = faults.dropAfter >= 0 && faults.dropAfter < m_left;
    // What a refused method sent along is not worth reading.
    m_closes = drops || !m_request.keepAlive || m_reply.status == 405;
    m_socket->write(m_reply.head(!m_closes));
    if (drops)
        m_left = faults.dropAfter;
    m_since.start();
    m_credit = 0;
    send();
}

void DemoConnection::send()
{
    while (m_busy && m_left > 0 && !m_pause.isActive() && m_socket->bytesToWrite() < 4 * chunk) {
        const qint64 count = std::min({m_left, chunk, allowance()});
        if (count == 0)
            return m_pause.start(pause);
        const QByteArray bytes = m_reply.file
                                     ? m_reply.file->read(count)
                                     : m_reply.body.sliced(m_reply.body.size() - m_left, count);
        if (bytes.isEmpty())
            return m_socket->abort(); // the file became shorter while it was sent
        m_left -= bytes.size();
        m_credit -= double(bytes.size());
        m_socket->write(bytes);
    }
    if (m_busy && m_left == 0 && m_socket->bytesToWrite() == 0)
        bodySent();
}

qint64 DemoConnection::allowance()
{
    const qint64 rate = m_controls.faultsFor(m_request.target).bytesPerSecond;
    m_credit = rate > 0 ? m_credit + double(rate * m_since.restart()) / 1000 : double(chunk);
    return qint64(m_credit);
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
