// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoReply.h"
#include "DemoTorrents.h"

namespace tavelo {

/// A search of the demo's YTS service: a JSON object of films, each with its torrents.
class YtsReply
{
public:
    static DemoReply of(const DemoRequest &request, const DemoTorrents &torrents);
};

} // namespace tavelo
