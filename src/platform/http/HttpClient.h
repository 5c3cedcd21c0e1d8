// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QCoroTask>
#include <QFuture>
#include <QNetworkAccessManager>
#include <QObject>
#include <QSet>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>

namespace tavelo {

struct HttpResponse
{
    QByteArray body;
    int status = 0;
    /// Of a redirect that leaves the web, where it points, letter for letter; else empty.
    QString leadsTo;
    /// Whether it came over connections that carry many answers at once (HTTP/2). Absent when it
    /// was kept.
    std::optional<bool> multiplexed = {};
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

    /// Who goes first where connections are scarce.
    enum class Priority { High, Low };

    /// The client of the process. Created on first use; ends with the application object.
    static HttpClient &shared();

    explicit HttpClient(QObject *parent = nullptr);
    ~HttpClient() override;

    /// One GET. Redirects are followed, never from https to http and never out of the web. Any
    /// final status is a response, also 404. Errors: BadUrl, at once, for anything but an http or
    /// https address with a host; TimedOut when nothing has come for `silenceLimit`, however long
    /// the whole takes; Cancelled once `stop` is requested, TooLarge for a body of more than
    /// `maxBytes`, else Transport, mostly with the network library's text.
    QCoro::Task<Result<HttpResponse>> get(QUrl url, std::chrono::milliseconds silenceLimit,
                                          std::stop_token stop = {}, qint64 maxBytes = maxBodyBytes,
                                          Priority priority = Priority::High);

    /// Opens a connection for the requests that will come: to an http or https address.
    void connectAhead(const QUrl &url);

    /// Whether the last answer that came from there was multiplexed: then many requests at once
    /// cost one connection.
    bool isMultiplexed(const QUrl &url) const { return m_multiplexed.contains(url.host()); }

    /// From now on responses are kept in memory and in `folder`, as long as HTTP allows (RFC 9111).
    /// The folder is created; in one that cannot be, nothing is kept.
    void setCacheFolder(const QString &folder);
    /// Forgets all kept responses. Ends when their files are gone.
    QFuture<void> clearCache();

private:
    void note(const QUrl &url, const Result<HttpResponse> &response);

    QNetworkAccessManager *m_network; // on the network thread
    ResponseCache *m_cache = nullptr; // there, too
    QSet<QString> m_multiplexed;      // hosts
};

} // namespace tavelo
