// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/HttpClient.h"

#include "platform/HttpExchange.h"
#include "platform/UserAgent.h"

#include <QCoreApplication>
#include <QCoroSignal>

namespace tavelo {

HttpClient &HttpClient::shared()
{
    static QPointer<HttpClient> client;
    if (!client)
        client = new HttpClient(QCoreApplication::instance());
    return *client;
}

HttpClient::HttpClient(QObject *parent)
    : QObject(parent)
{
    m_network.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

QCoro::Task<Result<HttpResponse>> HttpClient::get(QUrl url, std::chrono::milliseconds timeout,
                                                  std::stop_token stop)
{
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", userAgent());
    // Deleted later, not here: this flow may go on from inside the exchange's own signal.
    const std::unique_ptr<HttpExchange, QScopedPointerDeleteLater> exchange(
        new HttpExchange(m_network.get(request), timeout, std::move(stop)));
    co_await qCoro(exchange.get(), &HttpExchange::finished);
    co_return exchange->takeResult();
}

} // namespace tavelo
