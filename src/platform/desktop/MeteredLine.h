// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace tavelo {

/// Whether the system knows, or guesses, that the line to the network is paid for by what goes over
/// it. False when there is nobody to ask, or no answer after `patience`. For background threads.
bool isLineMetered(std::chrono::milliseconds patience);

} // namespace tavelo
