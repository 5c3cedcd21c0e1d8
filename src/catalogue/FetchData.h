// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/HttpClient.h"

namespace tavelo {

/// The body of a GET, whole. A status outside 200 to 299 is NetError::http; everything else that
/// goes wrong is the transport's error, unchanged. `client` must outlive the flow. Main thread
/// only.
QCoro::Task<Result<QByteArray>> fetchData(QUrl url, std::chrono::milliseconds timeout,
                                          std::stop_token stop = {},
                                          HttpClient &client = HttpClient::shared());

} // namespace tavelo
