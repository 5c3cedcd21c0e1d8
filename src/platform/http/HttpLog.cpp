// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpLog.h"

namespace tavelo {

Q_LOGGING_CATEGORY(logHttp, "tavelo.http", QtWarningMsg)

} // namespace tavelo
