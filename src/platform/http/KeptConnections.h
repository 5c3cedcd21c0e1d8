// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

#include <curl/curl.h>

namespace tavelo {

/// The connections that libcurl keeps after a request, by their sockets: it does not tell by
/// itself. Some of them may be in use again.
class KeptConnections
{
public:
    /// libcurl shall tell when it closes a connection of this handle's.
    void listenTo(CURL *easy);

    /// After a request to `host`, while its handle is still in the multi handle. Returns the
    /// connection; CURL_SOCKET_BAD when it is not kept.
    curl_socket_t keep(CURL *easy, const QString &host);

    bool isKept(curl_socket_t socket, const QString &host) const
    {
        return m_hosts.value(socket) == host;
    }
    /// How many to this host could carry a request: the server has neither closed them nor sends
    /// anything.
    int quietOnes(const QString &host) const;

private:
    static int closed(void *self, curl_socket_t socket);

    QHash<curl_socket_t, QString> m_hosts;
};

} // namespace tavelo
