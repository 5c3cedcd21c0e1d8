// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace tavelo {

// What happens, a line each, for whoever looks for a fault: quiet unless it is asked for. Never a
// query of an address, nor a key, nor a text that the user has typed.
Q_DECLARE_LOGGING_CATEGORY(logHttp)
Q_DECLARE_LOGGING_CATEGORY(logMedia) // films on their way to the engine
Q_DECLARE_LOGGING_CATEGORY(logTransfers)
Q_DECLARE_LOGGING_CATEGORY(logStorage)
Q_DECLARE_LOGGING_CATEGORY(logSearch)
Q_DECLARE_LOGGING_CATEGORY(logApp)

} // namespace tavelo
