// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoCatalogue.h"
#include "DemoFaults.h"
#include "DemoReply.h"

#include <QTcpServer>
#include <QThread>

#include <mutex>

namespace tavelo {

/// A film service on 127.0.0.1, on a thread of its own: search, metadata, films, posters, pages.
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

    /// Any thread, any time.
    void setFaults(const DemoFaults &faults);

private:
    void listen();
    DemoFaults faults() const;
    DemoReply answer(const DemoRequest &request);

    const DemoCatalogue m_catalogue;
    QThread m_thread;
    QObject m_context; // lives on the thread; owns the listener and its connections
    QString m_baseUrl;
    mutable std::mutex m_mutex; // guards m_faults
    DemoFaults m_faults;
};

} // namespace tavelo
