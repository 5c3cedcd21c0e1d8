// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/MediaItem.h"
#include "search/TorrentSearchProvider.h"

namespace tavelo {

/// The film catalogue as a search provider. The entry's address is not used.
class ArchiveSearchProvider : public TorrentSearchProvider
{
public:
    using TorrentSearchProvider::TorrentSearchProvider;

    QCoro::Task<TorrentResults> search(QString query, std::stop_token stop) const override;

    static TorrentResult resultOf(const MediaItem &item, const QString &source);
};

} // namespace tavelo
