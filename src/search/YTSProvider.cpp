// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/YTSProvider.h"

#include "search/Endpoint.h"
#include "search/YTSParser.h"

namespace tavelo {

YTSProvider::YTSProvider(const ProviderConfig &config)
    : HttpSearchProvider(config, request, parseYTS)
{}

Result<QUrl> YTSProvider::request(const ProviderConfig &config, const QString &query)
{
    return endpoint(
        config.baseURL, QStringLiteral("/api/v2/list_movies.json"),
        {{QStringLiteral("query_term"), query}, {QStringLiteral("limit"), QStringLiteral("30")}});
}

} // namespace tavelo
