// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Log.h"

namespace tavelo {

Q_LOGGING_CATEGORY(logHttp, "tavelo.http", QtWarningMsg)
Q_LOGGING_CATEGORY(logMedia, "tavelo.media", QtWarningMsg)
Q_LOGGING_CATEGORY(logTransfers, "tavelo.transfers", QtWarningMsg)
Q_LOGGING_CATEGORY(logStorage, "tavelo.storage", QtWarningMsg)
Q_LOGGING_CATEGORY(logSearch, "tavelo.search", QtWarningMsg)
Q_LOGGING_CATEGORY(logApp, "tavelo.app", QtWarningMsg)

} // namespace tavelo
