// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tavelo {

/// What is wrong with the demo's services at the moment.
struct DemoFaults
{
    QByteArray below = {};     // paths that begin so are concerned; empty: all
    int latency = 0;           // milliseconds before each answer
    int status = 0;            // other than 0: this status instead of an answer
    qint64 dropAfter = -1;     // bytes of a body after which the connection is closed; -1: never
    bool silent = false;       // requests are taken and never answered
    qint64 bytesPerSecond = 0; // of each body; 0: as fast as it goes

    bool concerns(const QByteArray &path) const { return path.startsWith(below); }
};

} // namespace tavelo
