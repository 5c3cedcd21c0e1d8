// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpAnswer.h"
#include "loopback/HttpRequest.h"

namespace tavelo {

/// What is wrong with the demo's services at the moment.
struct DemoFaults
{
    QByteArray below = {};     // paths that begin so are concerned; empty: all
    int latency = 0;           // milliseconds before each answer
    int status = 0;            // other than 0: this status instead of an answer
    int retryAfter = 0;        // seconds, told together with `status`; 0: not told
    qint64 dropAfter = -1;     // place in a file after which the connection ends; -1: never
    bool silent = false;       // requests are taken and never answered
    qint64 bytesPerSecond = 0; // of each body; 0: as fast as it goes
    int node = -1;             // only that one of the nodes is concerned; -1: everything
    bool failsRanges = false;  // who asks for a part of a file gets 500

    /// `node`: -1 for the catalogue's own host. A node's files count as lying below "/download/".
    bool concern(const QByteArray &path, int ofNode) const
    {
        return path.startsWith(below) && (node < 0 || node == ofNode);
    }
    HttpAnswer applied(HttpAnswer answer, const HttpRequest &request) const;
};

} // namespace tavelo
