// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ApiBayProvider.h"

#include "search/ApiBayParser.h"
#include "search/Endpoint.h"

namespace tavelo {

ApiBayProvider::ApiBayProvider(const ProviderConfig &config)
    : HttpSearchProvider(config, request, parseApiBay)
{}

Result<QUrl> ApiBayProvider::request(const ProviderConfig &config, const QString &query)
{
    return endpoint(
        config.baseURL, QStringLiteral("/q.php"),
        {{QStringLiteral("q"), query}, {QStringLiteral("cat"), QStringLiteral("200")}}); // videos
}

} // namespace tavelo
