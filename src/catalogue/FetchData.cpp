// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/FetchData.h"

#include "catalogue/NetError.h"

#include <QCoreApplication>

namespace tavelo {

Result<QByteArray> bodyOf(Result<HttpResponse> response)
{
    if (!response)
        return response.error();
    if (!response->leadsTo.isEmpty())
        return Error{ErrorKind::BadUrl,
                     QCoreApplication::translate(
                         "FetchData", "The server redirects to an address that is not on the web."),
                     0};
    if (response->status < 200 || response->status > 299)
        return NetError::http(response->status);
    return (*std::move(response)).body;
}

QCoro::Task<Result<QByteArray>> fetchData(QUrl url, std::chrono::milliseconds silenceLimit,
                                          std::stop_token stop, HttpClient &client, qint64 maxBytes,
                                          HttpClient::Priority priority)
{
    auto response =
        co_await client.get(std::move(url), silenceLimit, std::move(stop), maxBytes, priority);
    co_return bodyOf(std::move(response));
}

} // namespace tavelo
