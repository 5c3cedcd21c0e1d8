// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrents.h"
#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// A search of the demo's YTS service: a JSON object of films, each with its torrents.
class YtsReply
{
public:
    static HttpAnswer of(const HttpRequest &request, const DemoTorrents &torrents);
};

} // namespace tavelo
