// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"

#include <algorithm>

namespace tavelo {

DemoServer::DemoServer(const QString &filmsFolder)
    : m_catalogue(m_thread.add())
    , m_nodes{&m_thread.add(QStringLiteral("127.0.0.2")),
              &m_thread.add(QStringLiteral("127.0.0.3"))}
    , m_routes(filmsFolder, {m_nodes[0]->base(), m_nodes[1]->base()})
{
    m_thread.run([this] {
        m_catalogue.serveRest([this](const HttpRequest &request) {
            return faulty(m_routes.answer(request), request, request.target, -1);
        });
        for (int node = 0; node < int(m_nodes.size()); ++node)
            m_nodes[size_t(node)]->serveRest([this, node](const HttpRequest &request) {
                return faulty(m_routes.file(request), request, DemoRoutes::addressOf(request),
                              node);
            });
    });
}

DemoServer::~DemoServer()
{
    m_thread.stop(); // what its services use goes next
}

HttpAnswer DemoServer::faulty(HttpAnswer answer, const HttpRequest &request,
                              const QByteArray &address, int node) const
{
    return m_faults.concern(address, node) ? m_faults.applied(std::move(answer), request) : answer;
}

void DemoServer::setFaults(const DemoFaults &faults)
{
    m_thread.run([&] { m_faults = faults; });
}

QList<HttpRequest> DemoServer::requests()
{
    return m_thread.run([this] {
        QList<HttpRequest> all = m_catalogue.requests();
        for (const HttpService *node : m_nodes)
            all += node->requests();
        std::ranges::stable_sort(all, {}, &HttpRequest::arrival);
        return all;
    });
}

void DemoServer::forgetRequests()
{
    m_thread.run([this] {
        m_catalogue.forgetRequests();
        for (HttpService *node : m_nodes)
            node->forgetRequests();
    });
}

} // namespace tavelo
