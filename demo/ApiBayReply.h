// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoReply.h"
#include "DemoTorrents.h"

namespace tavelo {

/// A search of the demo's ApiBay service: a JSON array of rows whose values are all texts.
class ApiBayReply
{
public:
    static DemoReply of(const DemoRequest &request, const DemoTorrents &torrents);
};

} // namespace tavelo
