// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/HttpSearchProvider.h"

#include "catalogue/FetchData.h"
#include "platform/ThreadPool.h"

#include <QCoroFuture>

#include <chrono>
#include <memory>

namespace tavelo {

namespace {

constexpr std::chrono::seconds searchTimeout{15};

} // namespace

HttpSearchProvider::HttpSearchProvider(const ProviderConfig &config, MakeRequest makeRequest,
                                       Parse parse)
    : TorrentSearchProvider(config)
    , m_makeRequest(makeRequest)
    , m_parse(parse)
{}

QCoro::Task<TorrentResults> HttpSearchProvider::search(QString query, std::stop_token stop) const
{
    const auto parse = m_parse;
    const QString source = config().name;
    const auto request = m_makeRequest(config(), query);
    if (!request)
        co_return request.error();
    // A client of its own: the shared one asks six things of a host at a time, and one installation
    // may hold many indexers. Deleted later, after the exchange that uses it.
    const std::unique_ptr<HttpClient, QScopedPointerDeleteLater> client(new HttpClient);
    const auto body = co_await fetchData(*request, searchTimeout, stop, *client);
    if (!body)
        co_return body.error();
    if (stop.stop_requested())
        co_return Error{ErrorKind::Cancelled, {}, 0};
    auto parsed = runOnPool([parse, source, bytes = *body] { return parse(bytes, source); });
    co_return co_await parsed;
}

} // namespace tavelo
