// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrents.h"
#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// An answer of one of the demo's Torznab indexers: RSS, or an error document.
///
/// An indexer's listing says by `handle` how an item can be got at and by `size` where its size
/// stands. Real indexers differ in just these.
class TorznabReply
{
public:
    static HttpAnswer of(const HttpRequest &request, const QString &indexer,
                         const DemoTorrents &torrents);
};

} // namespace tavelo
