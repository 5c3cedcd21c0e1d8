// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/KnownProxies.h"

#include "platform/http/ProxyBook.h"

#include <QFutureWatcher>
#include <QPromise>

#include <memory>

namespace tavelo {

QList<QNetworkProxy> KnownProxies::queryProxy(const QNetworkProxyQuery &query)
{
    // The library names a connection that is opened ahead of its requests in a way of its own.
    QUrl url = query.url();
    url.setScheme(url.scheme().remove(QLatin1String("preconnect-")));
    return {ProxyBook::shared().proxyFor(url).value_or(QNetworkProxy(QNetworkProxy::NoProxy))};
}

void KnownProxies::whenKnown(const QUrl &url, QObject *context, std::function<void()> then)
{
    if (ProxyBook::shared().proxyFor(url))
        return then();
    const auto known = std::make_shared<QPromise<void>>();
    known->start();
    auto *watcher = new QFutureWatcher<void>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context,
                     [watcher, then = std::move(then)] {
                         watcher->deleteLater();
                         then();
                     });
    watcher->setFuture(known->future());
    ProxyBook::shared().ask(url, [known] { known->finish(); });
}

} // namespace tavelo
