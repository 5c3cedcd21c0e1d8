// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ProviderKind.h"

#include <algorithm>

namespace tavelo {

namespace {

struct Texts
{
    QLatin1String stored;
    QLatin1String label;
};

constexpr Texts textsOf(ProviderKind kind)
{
    switch (kind) {
    case ProviderKind::Orvella:
        return {QLatin1String("orvella"), QLatin1String("Orvella")};
    case ProviderKind::ApiBay:
        return {QLatin1String("apibay"), QLatin1String("ApiBay-compatible JSON")};
    case ProviderKind::Yts:
        return {QLatin1String("yts"), QLatin1String("YTS-compatible JSON")};
    case ProviderKind::Torznab:
        return {QLatin1String("torznab"), QLatin1String("Torznab (Jackett/Prowlarr)")};
    }
    Q_UNREACHABLE();
}

} // namespace

QString rawValue(ProviderKind kind)
{
    return textsOf(kind).stored;
}

std::optional<ProviderKind> providerKindFrom(const QString &rawValue)
{
    const auto *found = std::ranges::find(allProviderKinds, rawValue,
                                          [](ProviderKind kind) { return textsOf(kind).stored; });
    return found == allProviderKinds.end() ? std::nullopt : std::optional(*found);
}

QString label(ProviderKind kind)
{
    return textsOf(kind).label;
}

} // namespace tavelo
