// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// What one of libmpv's asynchronous replies belongs to: the kind above, a running number below.
namespace tavelo::MpvReply {

inline constexpr std::uint64_t kindMask = 0xffULL << 56;
inline constexpr std::uint64_t loadKind = 1ULL << 56;
inline constexpr std::uint64_t seekKind = 2ULL << 56;
inline constexpr std::uint64_t stopKind = 3ULL << 56;
inline constexpr std::uint64_t readyKind = 4ULL << 56;
inline constexpr std::uint64_t placeKind = 5ULL << 56;

} // namespace tavelo::MpvReply
