// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpReply.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

namespace tavelo {

class HttpService;

/// One client of a service: its requests, one after the other, and their answers.
class HttpConnection : public QObject
{
    Q_OBJECT

public:
    /// A child of the service; takes the socket, and goes with it.
    HttpConnection(HttpService &service, QTcpSocket *socket, int number);

    /// Whether it has a request whose answer is not sent to its end.
    bool isBusy() const { return m_busy; }
    void abort() { m_socket->abort(); }

private:
    void read();
    void begin(const HttpRequest &request, HttpAnswer answer);
    void start();
    void pump();
    void finish();
    void reset();
    qint64 allowance() const;
    qint64 buffered() const;

    HttpService &m_service;
    QTcpSocket *m_socket;
    int m_number;
    QByteArray m_received;
    bool m_busy = false;
    std::optional<HttpReply> m_reply; // once it is being sent
    qint64 m_sent = 0;                // bytes of its body
    bool m_tailSent = false;
    QTimer m_tick; // for a limited rate
    QElapsedTimer m_clock;
};

} // namespace tavelo
