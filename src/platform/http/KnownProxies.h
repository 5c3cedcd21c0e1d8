// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QNetworkProxy>
#include <QObject>

#include <functional>

namespace tavelo {

/// Gives Qt's network library the proxies that the ProxyBook knows by now, and so never waits for
/// the desktop.
class KnownProxies : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;

    /// Runs `then` once the proxy for this address is known: at once, or later on the thread of
    /// `context`, unless that is gone by then. To be called on that thread.
    static void whenKnown(const QUrl &url, QObject *context, std::function<void()> then);
};

} // namespace tavelo
