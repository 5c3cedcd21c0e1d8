// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/Fetch.h"
#include "platform/media/film/ByteSpan.h"

#include <algorithm>
#include <atomic>
#include <chrono>

namespace tavelo {

/// One request for a part of a film, on its way. Its film's thread makes and ends it, the fetch's
/// thread fills it.
struct Slice
{
    using Clock = std::chrono::steady_clock;

    /// Whom it asks.
    enum class Address {
        Item,        // the catalogue's own address, which leads to a node
        Node,        // where an earlier answer came from
        Alternative, // another node that the catalogue names
    };

    Slice(ByteSpan bytes, Address whom)
        : span(bytes)
        , address(whom)
        , next(bytes.first)
    {}

    qint64 bytesSoFar() const { return next - span.first; }
    ByteSpan rest() const { return {next, span.end}; }
    Clock::duration silentFor() const { return Clock::now() - std::max(started, lastByte.load()); }

    const ByteSpan span;
    const Address address;
    const Clock::time_point started = Clock::now();
    int turn = 0; // of the places that the film is asked for at
    FetchId id = {};
    bool counts = false;   // as a view of the item
    bool isSecond = false; // beside another one that asks for the same
    bool hasSecond = false;
    bool askedItem = false; // after silence, the item's own address was asked for it

    std::atomic<qint64> next;          // place of the next byte that it brings
    std::atomic_bool isWhole = false;  // it brings the film from its first byte, wherever it began
    std::atomic_bool isPutOff = false; // it has more than its reader wants
    std::atomic<Clock::time_point> firstByte{};
    std::atomic<Clock::time_point> lastByte{};
};

} // namespace tavelo
