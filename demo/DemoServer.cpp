// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"

#include "DemoConnection.h"

namespace tavelo {

DemoServer::DemoServer(const QString &filmsFolder)
    : m_routes(filmsFolder)
{
    m_thread.setObjectName(QStringLiteral("demo services"));
    m_context.moveToThread(&m_thread);
}

DemoServer::~DemoServer()
{
    if (m_thread.isRunning()) {
        // Sockets and listener end where they live.
        QMetaObject::invokeMethod(
            &m_context, [this] { qDeleteAll(m_context.children()); }, Qt::BlockingQueuedConnection);
    }
    m_thread.quit();
    m_thread.wait();
}

bool DemoServer::start()
{
    m_thread.start();
    QMetaObject::invokeMethod(
        &m_context, [this] { listen(); }, Qt::BlockingQueuedConnection);
    return !m_baseUrl.isEmpty();
}

void DemoServer::listen()
{
    auto *server = new QTcpServer(&m_context);
    if (!server->listen(QHostAddress::LocalHost))
        return;
    m_baseUrl = QStringLiteral("http://127.0.0.1:%1").arg(server->serverPort());
    QObject::connect(server, &QTcpServer::newConnection, server, [this, server] {
        while (QTcpSocket *socket = server->nextPendingConnection())
            new DemoConnection(socket, m_routes, m_controls, &m_context);
    });
}

} // namespace tavelo
