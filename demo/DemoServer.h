// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoFaults.h"
#include "DemoRoutes.h"
#include "loopback/HttpServiceThread.h"

#include <array>

namespace tavelo {

/// A film service on 127.0.0.1, on a thread of its own: search, metadata, posters, pages. The files
/// lie on two nodes, 127.0.0.2 and 127.0.0.3, to which its download addresses redirect in turn.
/// At the same address are the torrent search services: ApiBay, YTS, and the Torznab indexers
/// /torznab/reel/api, /torznab/slow/api (late) and /torznab/broken/api, whose key is "demo-key".
class DemoServer
{
public:
    explicit DemoServer(const QString &filmsFolder);
    ~DemoServer();
    Q_DISABLE_COPY_MOVE(DemoServer)

    /// Scheme, host and port.
    QString baseUrl() const { return m_catalogue.base(); }

    /// In place of those set before. An answer on its way keeps what it began with.
    void setFaults(const DemoFaults &faults);

    /// In the order of their arrival, those to the nodes and those without an answer included.
    QList<HttpRequest> requests();
    void forgetRequests();

private:
    /// `address`: where the catalogue's host has what is asked for.
    HttpAnswer faulty(HttpAnswer answer, const HttpRequest &request, const QByteArray &address,
                      int node) const;

    HttpServiceThread m_thread;
    HttpService &m_catalogue;
    const std::array<HttpService *, 2> m_nodes;
    const DemoRoutes m_routes;
    DemoFaults m_faults; // only on the services' thread
};

} // namespace tavelo
