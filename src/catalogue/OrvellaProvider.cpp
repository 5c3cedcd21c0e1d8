// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/OrvellaProvider.h"

#include "catalogue/ArchiveParser.h"
#include "catalogue/ArchiveQuery.h"
#include "catalogue/FetchData.h"
#include "catalogue/NetError.h"
#include "platform/ThreadPool.h"

#include <QCoroFuture>

namespace tavelo::OrvellaProvider {

namespace {

using namespace std::chrono_literals;

constexpr auto searchTimeout = 15s;
constexpr auto detailsTimeout = 20s;
/// What is parsed in less than a millisecond is parsed on the spot.
constexpr qsizetype parsedInPlace = 32 * 1024; // bytes

} // namespace

QCoro::Task<Result<QList<MediaItem>>> search(std::optional<QString> text,
                                             std::optional<QString> extra, QString sort, int rows,
                                             int page, std::stop_token stop)
{
    const auto url =
        ArchiveQuery::searchURL(ArchiveQuery::buildQuery(text, extra), sort, rows, page);
    if (!url)
        co_return url.error();
    const auto body = co_await fetchData(*url, searchTimeout, std::move(stop));
    if (!body)
        co_return body.error();
    if (body->size() <= parsedInPlace)
        co_return ArchiveParser::parseSearch(*body);
    co_return co_await runOnPool([bytes = *body] { return ArchiveParser::parseSearch(bytes); });
}

QCoro::Task<Result<ArchiveDetails>> details(QString id, std::stop_token stop)
{
    const auto url = ArchiveQuery::metadataURL(id);
    if (!url)
        co_return url.error();
    const auto body = co_await fetchData(*url, detailsTimeout, std::move(stop));
    if (!body)
        co_return body.error();
    const auto parse = [bytes = *body, id] { return ArchiveParser::parseDetails(bytes, id); };
    const auto parsed = body->size() <= parsedInPlace ? parse() : co_await runOnPool(parse);
    if (!parsed)
        co_return NetError::empty();
    co_return *parsed;
}

} // namespace tavelo::OrvellaProvider
