// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

struct mpv_handle;
struct mpv_event_log_message;

/// libmpv's own warnings and errors, in the log as "tavelo.engine": quiet unless it is asked for.
namespace tavelo::MpvLog {

void request(mpv_handle *handle);
void write(const mpv_event_log_message &message);

} // namespace tavelo::MpvLog
