// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

/// The failures of a request that we find ourselves; a transport's own pass through unchanged.
namespace tavelo::NetError {

inline Error http(int status)
{
    return {ErrorKind::Http, QStringLiteral("HTTP %1").arg(status), status};
}

inline Error badURL()
{
    return {ErrorKind::BadUrl, QStringLiteral("Invalid URL"), 0};
}

inline Error empty()
{
    return {ErrorKind::Empty, QStringLiteral("Empty response"), 0};
}

} // namespace tavelo::NetError
