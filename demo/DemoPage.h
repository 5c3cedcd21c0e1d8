// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpAnswer.h"

namespace tavelo {

/// A web page; `body` is HTML that follows the title.
struct DemoPage
{
    static HttpAnswer of(const QString &title, const QString &body);
};

} // namespace tavelo
