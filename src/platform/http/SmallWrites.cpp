// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/SmallWrites.h"

#include <QTimer>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace tavelo {

namespace {

constexpr std::chrono::milliseconds interval{10}; // of a far host's round trip a small part
constexpr int mostSockets = 512;

/// Of a socket that is connected over IP; else 0.
quint16 peerPort(int socket)
{
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    if (::getpeername(socket, reinterpret_cast<sockaddr *>(&peer), &size) != 0)
        return 0;
    if (peer.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in &>(peer).sin_port);
    if (peer.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 &>(peer).sin6_port);
    return 0;
}

bool holdsBack(int socket)
{
    int isPrompt = 1;
    socklen_t size = sizeof isPrompt;
    return ::getsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &isPrompt, &size) == 0 && isPrompt == 0;
}

} // namespace

SmallWrites::SmallWrites(quint16 port, QObject *parent)
    : QObject(parent)
    , m_port(port)
{
    auto *timer = new QTimer(this);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, this, &SmallWrites::look);
    timer->start(interval);
}

void SmallWrites::look()
{
    // Another thread may close a socket meanwhile, and its number mean another one: no harm is
    // done.
    for (int socket = 0; socket < mostSockets; ++socket) {
        if (peerPort(socket) != m_port || !holdsBack(socket))
            continue;
        const int isPrompt = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &isPrompt, sizeof isPrompt);
        return deleteLater();
    }
    if (++m_looks * interval >= patience)
        deleteLater();
}

} // namespace tavelo
