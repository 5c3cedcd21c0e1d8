// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/ProviderConfig.h"
#include "catalogue/TorrentResult.h"
#include "platform/Result.h"

#include <QCoroTask>

#include <memory>
#include <stop_token>

namespace tavelo {

using TorrentResults = Result<QList<TorrentResult>>;

/// One service that finds torrents by text. Immutable; searches may overlap. Main thread only; its
/// parsing is done on the thread pool.
class TorrentSearchProvider
{
public:
    explicit TorrentSearchProvider(const ProviderConfig &config)
        : m_config(config)
    {}
    virtual ~TorrentSearchProvider() = default;

    TorrentSearchProvider(const TorrentSearchProvider &) = delete;
    TorrentSearchProvider &operator=(const TorrentSearchProvider &) = delete;

    const ProviderConfig &config() const { return m_config; }

    /// What the service finds, in its order, or why it did not answer. The flow needs nothing of
    /// this object once it has been started. `stop` closes the connection and ends it with
    /// ErrorKind::Cancelled.
    virtual QCoro::Task<TorrentResults> search(QString query, std::stop_token stop) const = 0;

private:
    const ProviderConfig m_config;
};

using TorrentSearchProviders = QList<std::shared_ptr<const TorrentSearchProvider>>;

/// The provider of the entry's kind.
std::shared_ptr<const TorrentSearchProvider> makeProvider(const ProviderConfig &config);

} // namespace tavelo
