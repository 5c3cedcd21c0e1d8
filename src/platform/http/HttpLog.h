// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace tavelo {

/// Requests, a line each: never a query or a key.
Q_DECLARE_LOGGING_CATEGORY(logHttp)

} // namespace tavelo
