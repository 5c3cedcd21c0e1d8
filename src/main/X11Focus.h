// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo::X11Focus {

/// Lets the next window that asks for the keyboard have it: X11 gives it to nobody whose last event
/// from the user is older than another program's. The time is that of the startup id which the
/// desktop gave to the program it started; a text without one changes nothing.
void allow(const QString &startupId);

} // namespace tavelo::X11Focus
