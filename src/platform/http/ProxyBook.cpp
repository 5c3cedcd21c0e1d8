// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/ProxyBook.h"

#include "platform/ThreadPool.h"

#include <QHostAddress>

#include <utility>

namespace tavelo {

namespace {

QNetworkProxy systemProxyFor(const QUrl &place)
{
    const auto proxies = QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(place));
    for (const QNetworkProxy &proxy : proxies) {
        if (proxy.type() == QNetworkProxy::NoProxy || !proxy.hostName().isEmpty())
            return proxy;
    }
    return QNetworkProxy(QNetworkProxy::NoProxy);
}

bool isThisMachine(const QString &host)
{
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

/// All that a proxy is chosen by.
QUrl placeOf(const QUrl &url)
{
    QUrl place;
    place.setScheme(url.scheme());
    place.setHost(url.host());
    place.setPort(url.port());
    return place;
}

} // namespace

ProxyBook &ProxyBook::shared()
{
    static ProxyBook book;
    return book;
}

std::optional<QNetworkProxy> ProxyBook::proxyFor(const QUrl &url)
{
    if (isThisMachine(url.host()))
        return QNetworkProxy(QNetworkProxy::NoProxy);
    const QUrl place = placeOf(url);
    const std::scoped_lock lock(m_mutex);
    const auto entry = m_entries.find(place);
    if (entry == m_entries.end())
        return {};
    if (entry->proxy && !entry->isAsked && Clock::now() - entry->asked > shelfLife)
        askAgain(*entry, place);
    return entry->proxy;
}

void ProxyBook::ask(const QUrl &url, std::function<void()> then)
{
    if (proxyFor(url))
        return then();
    const QUrl place = placeOf(url);
    {
        const std::scoped_lock lock(m_mutex);
        Entry &entry = m_entries[place];
        if (!entry.proxy) { // it may have come in between
            entry.waiting.push_back(std::move(then));
            if (!entry.isAsked)
                askAgain(entry, place);
            return;
        }
    }
    then();
}

/// With the lock held.
void ProxyBook::askAgain(Entry &entry, const QUrl &place)
{
    entry.isAsked = true;
    runOnPool([this, place] { answered(place, systemProxyFor(place)); });
}

void ProxyBook::answered(const QUrl &place, const QNetworkProxy &proxy)
{
    std::vector<std::function<void()>> waiting;
    {
        const std::scoped_lock lock(m_mutex);
        Entry &entry = m_entries[place];
        entry.proxy = proxy;
        entry.asked = Clock::now();
        entry.isAsked = false;
        waiting.swap(entry.waiting);
    }
    for (const auto &then : waiting)
        then();
}

QByteArray ProxyBook::textOf(const QNetworkProxy &proxy)
{
    if (proxy.type() == QNetworkProxy::NoProxy)
        return {};
    QUrl url;
    url.setHost(proxy.hostName());
    url.setPort(proxy.port());
    url.setUserName(proxy.user());
    url.setPassword(proxy.password());
    // The proxy looks up the host's name, as it may be the only one that can.
    const bool socks = proxy.type() == QNetworkProxy::Socks5Proxy;
    url.setScheme(socks ? QStringLiteral("socks5h") : QStringLiteral("http"));
    return url.toEncoded();
}

} // namespace tavelo
