// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvLog.h"

#include <QByteArray>
#include <QLoggingCategory>

#include <mpv/client.h>

namespace tavelo::MpvLog {

namespace {

Q_LOGGING_CATEGORY(logEngine, "tavelo.engine", QtWarningMsg)

} // namespace

void request(mpv_handle *handle)
{
    if (logEngine().isInfoEnabled())
        mpv_request_log_messages(handle, "warn");
}

void write(const mpv_event_log_message &message)
{
    qCInfo(logEngine).noquote().nospace()
        << message.prefix << ": " << message.level << ": " << QByteArray(message.text).trimmed();
}

} // namespace tavelo::MpvLog
