// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

namespace tavelo {

/// An HTTP service on 127.0.0.1, on a thread of its own, that answers every request with one
/// picture, so many milliseconds later. Connections stay open.
class PosterSource
{
public:
    PosterSource(const QByteArray &picture, int latency)
        : m_answer("HTTP/1.1 200 OK\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                   QByteArray::number(picture.size()) + "\r\n\r\n" + picture)
        , m_latency(latency)
    {
        m_context.moveToThread(&m_thread);
        m_thread.start();
        QMetaObject::invokeMethod(
            &m_context, [this] { listen(); }, Qt::BlockingQueuedConnection);
    }

    ~PosterSource()
    {
        QMetaObject::invokeMethod(
            &m_context, [this] { qDeleteAll(m_context.children()); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY_MOVE(PosterSource)

    QString base() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }

private:
    void listen()
    {
        auto *server = new QTcpServer(&m_context);
        if (!server->listen(QHostAddress::LocalHost))
            qFatal("No port to listen on");
        m_port = server->serverPort();
        QObject::connect(server, &QTcpServer::newConnection, server, [this, server] {
            QTcpSocket *client = server->nextPendingConnection();
            QObject::connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
            QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
                if (client->readAll().endsWith("\r\n\r\n"))
                    QTimer::singleShot(m_latency, client,
                                       [this, client] { client->write(m_answer); });
            });
        });
    }

    QByteArray m_answer;
    int m_latency;
    quint16 m_port = 0;
    QThread m_thread;
    QObject m_context; // lives on the thread; owns the listener and its connections
};

} // namespace tavelo
