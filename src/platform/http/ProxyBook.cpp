// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/ProxyBook.h"

#include "platform/ThreadPool.h"

#include <QHostAddress>
#include <QNetworkProxy>

namespace tavelo {

namespace {

QString textOf(const QNetworkProxy &proxy)
{
    QUrl url;
    url.setHost(proxy.hostName());
    url.setPort(proxy.port());
    url.setUserName(proxy.user());
    url.setPassword(proxy.password());
    // The proxy looks up the host's name, as it may be the only one that can.
    const bool socks = proxy.type() == QNetworkProxy::Socks5Proxy;
    url.setScheme(socks ? QStringLiteral("socks5h") : QStringLiteral("http"));
    return url.toString(QUrl::FullyEncoded);
}

QString systemProxyFor(const QUrl &url)
{
    for (const auto &proxy : QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url))) {
        if (proxy.type() == QNetworkProxy::NoProxy)
            return {};
        if (!proxy.hostName().isEmpty())
            return textOf(proxy);
    }
    return {};
}

bool isThisMachine(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

} // namespace

std::optional<QString> ProxyBook::proxyFor(const QUrl &url, Clock::time_point now) const
{
    if (isThisMachine(url.host()))
        return QString();
    const auto entry = m_entries.constFind(url.host());
    if (entry == m_entries.constEnd() || now - entry->asked > shelfLife)
        return {};
    return entry->proxy;
}

void ProxyBook::ask(const QUrl &url, std::function<void(std::function<void()>)> hand)
{
    runOnPool([this, url, hand = std::move(hand)] {
        const QString proxy = systemProxyFor(url);
        hand([this, host = url.host(), proxy] { m_entries.insert(host, {proxy, Clock::now()}); });
    });
}

} // namespace tavelo
