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
    auto items = runOnPool([bytes = *body] { return ArchiveParser::parseSearch(bytes); });
    co_return co_await items;
}

QCoro::Task<Result<ArchiveDetails>> details(QString id, std::stop_token stop)
{
    const auto url = ArchiveQuery::metadataURL(id);
    if (!url)
        co_return url.error();
    const auto body = co_await fetchData(*url, detailsTimeout, std::move(stop));
    if (!body)
        co_return body.error();
    std::optional<ArchiveDetails> parsed;
    if (body->size() <= parsedInPlace) {
        parsed = ArchiveParser::parseDetails(*body, id);
    } else {
        auto pending =
            runOnPool([bytes = *body, id] { return ArchiveParser::parseDetails(bytes, id); });
        parsed = co_await pending;
    }
    if (!parsed)
        co_return NetError::empty();
    co_return *parsed;
}

} // namespace tavelo::OrvellaProvider
