// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoFaults.h"

namespace tavelo {

HttpAnswer DemoFaults::applied(HttpAnswer answer, const HttpRequest &request) const
{
    const bool fails = failsRanges && request.headers.contains("range");
    if (status != 0 || fails) {
        answer = HttpAnswer::text(fails ? 500 : status, "A fault of the demo.", "text/plain");
        if (retryAfter > 0)
            answer.headers.append({"Retry-After", QByteArray::number(retryAfter)});
    }
    answer.delay += std::chrono::milliseconds(latency);
    answer.silent = silent;
    answer.bytesPerSecond = bytesPerSecond;
    if (dropAfter >= 0)
        answer.cutAfter = dropAfter;
    return answer;
}

} // namespace tavelo
