// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/HttpSearchProvider.h"

namespace tavelo {

/// A YTS-compatible service.
class YTSProvider : public HttpSearchProvider
{
public:
    explicit YTSProvider(const ProviderConfig &config);

    /// NetError::badURL when the entry's address is no URL with a host.
    static Result<QUrl> request(const ProviderConfig &config, const QString &query);
};

} // namespace tavelo
