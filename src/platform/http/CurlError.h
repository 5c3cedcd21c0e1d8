// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <curl/curl.h>

/// What libcurl's codes mean to the user.
namespace tavelo::CurlError {

/// `systemError`: the errno behind it, 0 when there is none.
Error of(CURLcode code, int systemError);
Error cancelled();
Error silent();
Error unsafeRedirect();
Error endlessRedirect();

} // namespace tavelo::CurlError
