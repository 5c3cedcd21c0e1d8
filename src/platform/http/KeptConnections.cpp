// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/KeptConnections.h"

#include <algorithm>

#include <poll.h>
#include <unistd.h>

namespace tavelo {

void KeptConnections::listenTo(CURL *easy)
{
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &KeptConnections::closed);
    curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, static_cast<void *>(this));
}

curl_socket_t KeptConnections::keep(CURL *easy, const QString &host)
{
    curl_socket_t socket = CURL_SOCKET_BAD;
    curl_easy_getinfo(easy, CURLINFO_ACTIVESOCKET, &socket);
    if (socket != CURL_SOCKET_BAD)
        m_hosts.insert(socket, host);
    return socket;
}

int KeptConnections::quietOnes(const QString &host) const
{
    const auto sockets = m_hosts.keys(host);
    return static_cast<int>(std::ranges::count_if(sockets, [](curl_socket_t socket) {
        pollfd wanted{socket, POLLIN, 0};
        return ::poll(&wanted, 1, 0) == 0;
    }));
}

int KeptConnections::closed(void *self, curl_socket_t socket)
{
    static_cast<KeptConnections *>(self)->m_hosts.remove(socket);
    return ::close(socket);
}

} // namespace tavelo
