// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrents.h"
#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// A search of the demo's ApiBay service: a JSON array of rows whose values are all texts.
class ApiBayReply
{
public:
    static HttpAnswer of(const HttpRequest &request, const DemoTorrents &torrents);
};

} // namespace tavelo
