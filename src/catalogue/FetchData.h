// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/HttpClient.h"

namespace tavelo {

/// The body of a response with a status of 200 to 299. Any other is NetError::http; a redirect that
/// leaves the web is ErrorKind::BadUrl; an error stays what it is.
Result<QByteArray> bodyOf(Result<HttpResponse> response);

/// The body of a GET, whole, by that rule; ErrorKind::TimedOut when nothing has come for
/// `silenceLimit`, ErrorKind::TooLarge for more than `maxBytes`. `client` must outlive the flow.
/// Main thread only.
QCoro::Task<Result<QByteArray>>
fetchData(QUrl url, std::chrono::milliseconds silenceLimit, std::stop_token stop = {},
          HttpClient &client = HttpClient::shared(), qint64 maxBytes = HttpClient::maxBodyBytes,
          HttpClient::Priority priority = HttpClient::Priority::High);

} // namespace tavelo
