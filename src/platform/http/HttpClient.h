// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QCoroTask>
#include <QFuture>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace tavelo {

struct HttpResponse
{
    QByteArray body;
    int status = 0;
    /// Of a redirect that leaves the web, where it points, letter for letter; else empty.
    QString leadsTo;
};

class ResponseCache;

/// A set of connections to HTTP services. Used from the main thread only; its requests run on the
/// network thread.
class HttpClient : public QObject
{
    Q_OBJECT

public:
    /// A larger body is refused with ErrorKind::TooLarge.
    static constexpr qint64 maxBodyBytes = 64LL * 1024 * 1024;

    /// The client of the process. Created on first use; ends with the application object.
    static HttpClient &shared();

    explicit HttpClient(QObject *parent = nullptr);
    ~HttpClient() override;

    /// One GET. Redirects are followed, never from https to http and never out of the web. Any
    /// final status is a response, also 404. Errors: BadUrl, at once, for anything but an http or
    /// https address with a host; TimedOut when the whole exchange has not ended after `timeout`,
    /// Cancelled once `stop` is requested, TooLarge for a body of more than `maxBytes`, else
    /// Transport, mostly with the network library's text.
    QCoro::Task<Result<HttpResponse>> get(QUrl url, std::chrono::milliseconds timeout,
                                          std::stop_token stop = {},
                                          qint64 maxBytes = maxBodyBytes);

    /// From now on responses are kept in memory and in `folder`, as long as HTTP allows (RFC 9111).
    /// The folder is created; in one that cannot be, nothing is kept.
    void setCacheFolder(const QString &folder);
    /// Forgets all kept responses. Ends when their files are gone.
    QFuture<void> clearCache();

private:
    QNetworkAccessManager *m_network; // on the network thread
    ResponseCache *m_cache = nullptr; // there, too
};

} // namespace tavelo
