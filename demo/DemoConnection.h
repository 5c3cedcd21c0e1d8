// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoFaults.h"
#include "DemoReply.h"

#include <QTcpSocket>

#include <functional>

namespace tavelo {

/// One client of the demo's services: its requests, one after the other, and their answers.
class DemoConnection : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<DemoReply(const DemoRequest &)>;
    using Faults = std::function<DemoFaults()>;

    DemoConnection(QTcpSocket *socket, Answer answer, Faults faults, QObject *parent);

private:
    void readRequest();
    void reply(const DemoRequest &request);
    void send();
    void bodySent();

    QTcpSocket *m_socket;
    Answer m_answer;
    Faults m_faults;
    bool m_busy = false; // with an answer; further requests wait
    DemoReply m_reply;
    qint64 m_left = 0;     // bytes of the body still to send
    bool m_closes = false; // after this answer
};

} // namespace tavelo
