// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpService.h"

namespace tavelo {

using FaultServer = HttpService;

} // namespace tavelo
