// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/HttpSearchProvider.h"

namespace tavelo {

/// An ApiBay-compatible service.
class ApiBayProvider : public HttpSearchProvider
{
public:
    explicit ApiBayProvider(const ProviderConfig &config);

    /// NetError::badURL when the entry's address is no URL with a host.
    static Result<QUrl> request(const ProviderConfig &config, const QString &query);
};

} // namespace tavelo
