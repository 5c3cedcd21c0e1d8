// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cerrno>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavelo {

/// A connection that shows what comes over it, and how it ends, as the system sees it.
class RawClient
{
public:
    enum class End { Closed, Reset, Silence };

    explicit RawClient(int port)
        : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const timeval patience{0, 300'000};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<quint16>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_connected =
            connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    }
    ~RawClient() { close(m_socket); }
    Q_DISABLE_COPY_MOVE(RawClient)

    bool isConnected() const { return m_connected; }

    void send(const QByteArray &text) const
    {
        ::send(m_socket, text.constData(), static_cast<size_t>(text.size()), MSG_NOSIGNAL);
    }

    /// All that comes until the connection ends or nothing came for 0.3 s.
    End receive(QByteArray &bytes) const
    {
        char block[4096];
        ssize_t count = 0;
        while ((count = recv(m_socket, block, sizeof block, 0)) > 0)
            bytes.append(block, count);
        if (count == 0)
            return End::Closed;
        return errno == ECONNRESET ? End::Reset : End::Silence;
    }

private:
    int m_socket;
    bool m_connected = false;
};

} // namespace tavelo
