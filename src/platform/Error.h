// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

enum class ErrorKind {
    Transport, // no route, refused, reset, TLS: the network library's own words
    TimedOut,
    Cancelled,
    TooLarge,
    Http,
    BadUrl,
    Empty,
    Malformed, // an answer or a file that cannot be read as what it should be
    Service,   // the service itself says why it did not answer
    Storage,   // a file or folder on this machine: gone, not writable
    NoSpace,   // no room for a file on this machine
};

/// A failure as a value.
struct Error
{
    ErrorKind kind = ErrorKind::Transport;
    QString text;       // what the user reads; never a piece of a response body
    int httpStatus = 0; // with ErrorKind::Http only

    bool operator==(const Error &) const = default;
};

} // namespace tavelo
