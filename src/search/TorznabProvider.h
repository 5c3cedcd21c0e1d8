// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/HttpSearchProvider.h"

namespace tavelo {

/// A Torznab indexer, at the entry's address as it is.
class TorznabProvider : public HttpSearchProvider
{
public:
    explicit TorznabProvider(const ProviderConfig &config);

    /// NetError::badURL when the entry's address is no URL with a host.
    static Result<QUrl> request(const ProviderConfig &config, const QString &query);
};

} // namespace tavelo
