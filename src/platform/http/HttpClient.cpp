// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpClient.h"

#include "platform/http/HttpExchange.h"
#include "platform/http/KnownProxies.h"
#include "platform/http/NetworkThread.h"
#include "platform/http/ResponseCache.h"
#include "platform/http/ServiceHosts.h"
#include "platform/http/SmallWrites.h"
#include "platform/http/UserAgent.h"
#include "platform/http/WebAddress.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QPointer>
#include <QPromise>
#include <QSslConfiguration>

namespace tavelo {

namespace {

QSslConfiguration secureConfiguration()
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    if (const QByteArray &pem = ServiceHosts::current().certificates; !pem.isEmpty())
        configuration.addCaCertificates(QSslCertificate::fromData(pem));
    return configuration;
}

} // namespace

HttpClient &HttpClient::shared()
{
    static QPointer<HttpClient> client;
    if (!client)
        client = new HttpClient(QCoreApplication::instance());
    return *client;
}

HttpClient::HttpClient(QObject *parent)
    : QObject(parent)
    , m_network(new QNetworkAccessManager)
{
    m_network->setProxyFactory(new KnownProxies);                        // owned
    m_network->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy); // HttpExchange follows
    m_network->moveToThread(&NetworkThread::shared());
}

HttpClient::~HttpClient()
{
    m_network->deleteLater();
}

QCoro::Task<Result<HttpResponse>> HttpClient::get(QUrl url, std::chrono::milliseconds silenceLimit,
                                                  std::stop_token stop, qint64 maxBytes,
                                                  Priority priority)
{
    // The network library reads files, too, and a pipe would hold up its thread for good.
    if (!isWebAddress(url))
        co_return Error{ErrorKind::BadUrl, tr("This is not a web address."), 0};
    QNetworkRequest request(url);
    request.setRawHeader("User-Agent", userAgent());
    if (url.scheme() == QLatin1String("https"))
        request.setSslConfiguration(secureConfiguration());
    request.setPriority(priority == Priority::High ? QNetworkRequest::HighPriority
                                                   : QNetworkRequest::LowPriority);
    const QPointer<HttpClient> self(this);
    const auto promise = std::make_shared<QPromise<Result<HttpResponse>>>();
    promise->start();
    QMetaObject::invokeMethod(m_network, [=, network = m_network] {
        auto *exchange = new HttpExchange(network, request, silenceLimit, stop, maxBytes);
        QObject::connect(exchange, &HttpExchange::finished, exchange, [exchange, promise] {
            promise->addResult(exchange->takeResult());
            promise->finish();
            exchange->deleteLater();
        });
    });
    const auto future = promise->future();
    const auto response = co_await future;
    if (self)
        note(url, response);
    co_return response;
}

void HttpClient::note(const QUrl &url, const Result<HttpResponse> &response)
{
    if (!response || !response->multiplexed)
        return;
    if (*response->multiplexed)
        m_multiplexed.insert(url.host());
    else
        m_multiplexed.remove(url.host());
}

void HttpClient::connectAhead(const QUrl &url)
{
    if (!isWebAddress(url))
        return;
    const auto connect = [network = m_network, url] {
        const bool isSecure = url.scheme() == QLatin1String("https");
        const auto port = static_cast<quint16>(url.port(isSecure ? 443 : 80));
        new SmallWrites(port, network);
        if (!isSecure)
            return network->connectToHost(url.host(), port);
        auto configuration = secureConfiguration();
        // What requests are let use by themselves, such a connection must be told.
        configuration.setAllowedNextProtocols(
            {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
        network->connectToHostEncrypted(url.host(), port, configuration);
    };
    QMetaObject::invokeMethod(
        m_network, [=, network = m_network] { KnownProxies::whenKnown(url, network, connect); });
}

void HttpClient::setCacheFolder(const QString &folder)
{
    if (!m_cache) {
        m_cache = new ResponseCache;
        m_cache->moveToThread(m_network->thread());
        QMetaObject::invokeMethod(m_network, [network = m_network, cache = m_cache] {
            network->setCache(cache); // owns it
        });
    }
    QMetaObject::invokeMethod(m_cache, [cache = m_cache, folder] { cache->setFolder(folder); });
}

QFuture<void> HttpClient::clearCache()
{
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    QMetaObject::invokeMethod(m_network, [cache = m_cache, promise] {
        if (cache)
            cache->clear();
        promise->finish();
    });
    return promise->future();
}

} // namespace tavelo
