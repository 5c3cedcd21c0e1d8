// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoControls.h"
#include "DemoRoutes.h"

#include <QTcpServer>
#include <QThread>

namespace tavelo {

/// A film service on 127.0.0.1, on a thread of its own: search, metadata, films, posters, pages.
/// At the same address are the torrent search services: ApiBay, YTS, and the Torznab indexers
/// /torznab/reel/api, /torznab/slow/api (late) and /torznab/broken/api, whose key is "demo-key".
class DemoServer
{
public:
    explicit DemoServer(const QString &filmsFolder);
    ~DemoServer();

    DemoServer(const DemoServer &) = delete;
    DemoServer &operator=(const DemoServer &) = delete;

    /// False when no port can be had.
    bool start();
    /// Scheme, host and port; valid after start().
    QString baseUrl() const { return m_baseUrl; }

    DemoControls &controls() { return m_controls; }
    void setFaults(const DemoFaults &faults) { m_controls.setFaults({faults}); }

private:
    void listen();

    const DemoRoutes m_routes;
    DemoControls m_controls;
    QThread m_thread;
    QObject m_context; // lives on the thread; owns the listener and its connections
    QString m_baseUrl;
};

} // namespace tavelo
