// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoControls.h"
#include "DemoRoutes.h"

#include <QElapsedTimer>
#include <QTcpSocket>
#include <QTimer>

namespace tavelo {

/// One client of the demo's services: its requests, one after the other, and their answers.
class DemoConnection : public QObject
{
    Q_OBJECT

public:
    /// Takes the socket. `routes` and `controls` must outlive this.
    DemoConnection(QTcpSocket *socket, const DemoRoutes &routes, DemoControls &controls,
                   QObject *parent);

private:
    void readRequest();
    void reply();
    void sendHead();
    void send();
    qint64 allowance();
    void bodySent();

    QTcpSocket *m_socket;
    const DemoRoutes &m_routes;
    DemoControls &m_controls;
    DemoRequest m_request;
    DemoReply m_reply;
    bool m_busy = false;   // with an answer; further requests wait
    bool m_closes = false; // after this answer
    qint64 m_left = 0;     // bytes of the body still to send
    QTimer m_pause;        // until a slow body may go on
    double m_credit = 0;   // bytes of it that may go at once
    QElapsedTimer m_since; // the last addition to that
};

} // namespace tavelo
