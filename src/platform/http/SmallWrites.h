// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <chrono>

namespace tavelo {

/// Qt's network library lets the system hold back a small write until the one before is
/// acknowledged (RFC 896), and gives nobody its sockets: the first request of a connection over TLS
/// waits a round trip for nothing, and so do all but the first that are sent together. This looks
/// for a connection that was just asked for among the sockets of the process, and has it send at
/// once.
class SmallWrites : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds patience{5};

    /// For the next connection to this port, on any host. Deletes itself when it has found it, or
    /// after `patience`.
    SmallWrites(quint16 port, QObject *parent);

private:
    void look();

    const quint16 m_port;
    int m_looks = 0;
};

} // namespace tavelo
