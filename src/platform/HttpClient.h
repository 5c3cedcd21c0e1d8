// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QCoroTask>
#include <QNetworkAccessManager>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace tavelo {

struct HttpResponse
{
    QByteArray body;
    int status = 0; // 0: the address was not an HTTP one (a file)
};

/// The HTTP client of the process. Lives on the main thread and is used from there only.
class HttpClient : public QObject
{
    Q_OBJECT

public:
    /// A larger body is refused with ErrorKind::TooLarge.
    static constexpr qint64 maxBodyBytes = 64LL * 1024 * 1024;

    /// Created on first use; ends with the application object.
    static HttpClient &shared();

    explicit HttpClient(QObject *parent = nullptr);

    /// One GET. Redirects are followed, never from https to http. Any final status is a response,
    /// also 404. Errors: TimedOut when the whole exchange has not ended after `timeout`, Cancelled
    /// once `stop` is requested, TooLarge, else Transport with the network library's text.
    QCoro::Task<Result<HttpResponse>> get(QUrl url, std::chrono::milliseconds timeout,
                                          std::stop_token stop = {});

private:
    QNetworkAccessManager m_network;
};

} // namespace tavelo
