// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/TorrentSearchProvider.h"

#include "search/ApiBayProvider.h"
#include "search/ArchiveSearchProvider.h"
#include "search/TorznabProvider.h"
#include "search/YTSProvider.h"

namespace tavelo {

std::shared_ptr<const TorrentSearchProvider> makeProvider(const ProviderConfig &config)
{
    switch (config.kind) {
    case ProviderKind::Orvella:
        return std::make_shared<ArchiveSearchProvider>(config);
    case ProviderKind::ApiBay:
        return std::make_shared<ApiBayProvider>(config);
    case ProviderKind::Yts:
        return std::make_shared<YTSProvider>(config);
    case ProviderKind::Torznab:
        return std::make_shared<TorznabProvider>(config);
    }
    Q_UNREACHABLE();
}

} // namespace tavelo
