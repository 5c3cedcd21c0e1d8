// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/TorrentSearchProvider.h"

namespace tavelo {

/// A service that answers one GET with one document.
class HttpSearchProvider : public TorrentSearchProvider
{
public:
    using MakeRequest = Result<QUrl> (*)(const ProviderConfig &, const QString &query);
    using Parse = TorrentResults (*)(const QByteArray &body, const QString &source);

    HttpSearchProvider(const ProviderConfig &config, MakeRequest makeRequest, Parse parse);

    QCoro::Task<TorrentResults> search(QString query, std::stop_token stop) const override;

private:
    const MakeRequest m_makeRequest;
    const Parse m_parse;
};

} // namespace tavelo
