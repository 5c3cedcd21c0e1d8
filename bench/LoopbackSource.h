// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <thread>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tavelo {

/// Sends as many bytes as it was told to everyone who connects, one after the other, as fast as
/// 127.0.0.1 takes them.
class LoopbackSource
{
public:
    explicit LoopbackSource(qint64 bytes)
        : m_bytes(bytes)
        , m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        if (bind(m_listener, generic, size) != 0 || listen(m_listener, 8) != 0 ||
            getsockname(m_listener, generic, &size) != 0)
            qFatal("No port to listen on");
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { run(); });
    }

    ~LoopbackSource()
    {
        shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        close(m_listener);
    }
    Q_DISABLE_COPY_MOVE(LoopbackSource)

    QString url() const { return QStringLiteral("http://127.0.0.1:%1/film.mp4").arg(m_port); }

private:
    void run()
    {
        for (int client = 0; (client = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
            char request[4096];
            if (recv(client, request, sizeof request, 0) > 0)
                serve(client);
            close(client);
        }
    }

    void serve(int client) const
    {
        const QByteArray head = "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                                QByteArray::number(m_bytes) + "\r\n\r\n";
        static const QByteArray block(1024 * 1024, 'f');
        qint64 left = m_bytes;
        ssize_t sent = send(client, head.constData(), static_cast<size_t>(head.size()), 0);
        while (sent > 0 && left > 0) {
            const auto count = static_cast<size_t>(std::min<qint64>(left, block.size()));
            sent = send(client, block.constData(), count, MSG_NOSIGNAL);
            left -= sent;
        }
    }

    qint64 m_bytes;
    int m_listener;
    quint16 m_port = 0;
    std::thread m_thread;
};

} // namespace tavelo
