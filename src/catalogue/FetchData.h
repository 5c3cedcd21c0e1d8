// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QCoroTask>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace tavelo {

/// The body of a GET, whole. A status outside 200 to 299 is NetError::http; everything else that
/// goes wrong is the transport's error, unchanged. Main thread only.
QCoro::Task<Result<QByteArray>> fetchData(QUrl url, std::chrono::milliseconds timeout,
                                          std::stop_token stop = {});

} // namespace tavelo
