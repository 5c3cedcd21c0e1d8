// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/FetchData.h"

#include "catalogue/NetError.h"

namespace tavelo {

QCoro::Task<Result<QByteArray>> fetchData(QUrl url, std::chrono::milliseconds timeout,
                                          std::stop_token stop, HttpClient &client)
{
    auto response = co_await client.get(std::move(url), timeout, std::move(stop));
    if (!response)
        co_return response.error();
    const bool isHttp = response->status != 0;
    if (isHttp && (response->status < 200 || response->status > 299))
        co_return NetError::http(response->status);
    co_return (*std::move(response)).body;
}

} // namespace tavelo
