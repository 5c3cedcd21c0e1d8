// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/HttpSearchProvider.h"

#include "catalogue/FetchData.h"
#include "catalogue/KeyMask.h"
#include "platform/ThreadPool.h"

#include <QCoroFuture>

#include <chrono>
#include <memory>

namespace tavelo {

namespace {

constexpr std::chrono::seconds searchTimeout{15};

// A service's own words may repeat what it was asked with.
Error withoutKeys(Error error, const ProviderConfig &config)
{
    error.text = KeyMask::message(error.text, config);
    return error;
}

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
    const ProviderConfig entry = config();
    const auto request = m_makeRequest(config(), query);
    if (!request)
        co_return request.error();
    // A client of its own: the shared one asks six things of a host at a time, and one installation
    // may hold many indexers. Deleted later, after the exchange that uses it.
    const std::unique_ptr<HttpClient, QScopedPointerDeleteLater> client(new HttpClient);
    const auto body = co_await fetchData(*request, searchTimeout, stop, *client);
    if (!body)
        co_return withoutKeys(body.error(), entry);
    if (stop.stop_requested())
        co_return Error{ErrorKind::Cancelled, {}, 0};
    auto parsing =
        runOnPool([parse, source = entry.name, bytes = *body] { return parse(bytes, source); });
    auto parsed = co_await parsing;
    if (!parsed)
        co_return withoutKeys(parsed.error(), entry);
    co_return parsed;
}

} // namespace tavelo
