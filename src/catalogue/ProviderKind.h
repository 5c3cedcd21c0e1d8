// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace tavelo {

/// The kinds of search service, each with request and answer formats of its own.
enum class ProviderKind { Orvella, ApiBay, Yts, Torznab };

inline constexpr std::array allProviderKinds{ProviderKind::Orvella, ProviderKind::ApiBay,
                                             ProviderKind::Yts, ProviderKind::Torznab};

/// As stored.
QString rawValue(ProviderKind kind);
/// Absent for any other text; letter case counts.
std::optional<ProviderKind> providerKindFrom(const QString &rawValue);
/// As shown.
QString label(ProviderKind kind);

} // namespace tavelo
