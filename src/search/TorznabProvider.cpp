// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/TorznabProvider.h"

#include "search/Endpoint.h"
#include "search/TorznabParser.h"

namespace tavelo {

TorznabProvider::TorznabProvider(const ProviderConfig &config)
    : HttpSearchProvider(config, request, [](const QByteArray &body, const QString &source) {
        return TorznabParser(source).parse(body);
    })
{}

Result<QUrl> TorznabProvider::request(const ProviderConfig &config, const QString &query)
{
    QList<QueryItem> items{{QStringLiteral("t"), QStringLiteral("search")},
                           {QStringLiteral("q"), query}};
    if (!config.apiKey.isEmpty())
        items.append({QStringLiteral("apikey"), config.apiKey});
    return endpoint(config.baseURL, {}, items);
}

} // namespace tavelo
