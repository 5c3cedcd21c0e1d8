// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"

#include "DemoConnection.h"

#include <QUrl>

namespace tavelo {

DemoServer::DemoServer(const QString &filmsFolder)
    : m_catalogue(filmsFolder)
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
            new DemoConnection(
                socket, [this](const DemoRequest &request) { return answer(request); },
                [this] { return faults(); }, &m_context);
    });
}

DemoReply DemoServer::answer(const DemoRequest &request)
{
    const QUrl url = QUrl::fromEncoded(request.target, QUrl::StrictMode);
    const QString path = url.path(QUrl::FullyDecoded);
    const auto below = [&](const char *folder) -> std::optional<QString> {
        return path.startsWith(QLatin1String(folder))
                   ? std::optional(path.sliced(qsizetype(qstrlen(folder))))
                   : std::nullopt;
    };
    if (path == QLatin1String("/advancedsearch.php"))
        return DemoReply::text(200, m_catalogue.search(QUrlQuery(url)), "application/json");
    if (const auto id = below("/metadata/"))
        return DemoReply::text(200, m_catalogue.metadata(*id), "application/json");
    if (const auto id = below("/services/img/"))
        return DemoReply::ofFile(m_catalogue.posterPath(*id).value_or(QString()), request);
    if (const auto name = below("/download/")) {
        const QString id = name->section(QLatin1Char('/'), 0, 0);
        const QString file = name->section(QLatin1Char('/'), 1);
        return DemoReply::ofFile(m_catalogue.filePath(id, file).value_or(QString()), request);
    }
    if (const auto id = below("/details/"))
        return DemoReply::text(200,
                               "<!doctype html><title>" + id->toHtmlEscaped().toUtf8() +
                                   "</title><p>An item's page in the demo.",
                               "text/html; charset=utf-8");
    return DemoReply::text(404, "Not here.", "text/plain");
}

void DemoServer::setFaults(const DemoFaults &faults)
{
    const std::scoped_lock lock(m_mutex);
    m_faults = faults;
}

DemoFaults DemoServer::faults() const
{
    const std::scoped_lock lock(m_mutex);
    return m_faults;
}

} // namespace tavelo
