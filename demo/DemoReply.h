// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoRequest.h"

#include <QIODevice>

#include <memory>

namespace tavelo {

/// An answer of the demo's services: a short text, or a file or part of one.
struct DemoReply
{
    int status = 200;
    QByteArray type = "application/json";
    QByteArray body;
    std::shared_ptr<QIODevice> file; // in place of `body`; stands at its first byte to send
    qint64 fileBytes = 0;            // of `file` to send
    QByteArray headers;              // further lines, each with its line end
    int latency = 0;                 // milliseconds before it is sent

    static DemoReply text(int status, const QByteArray &body, const QByteArray &type);
    /// A web page; `body` is HTML that follows the title.
    static DemoReply page(const QString &title, const QString &body);
    static DemoReply notFound() { return text(404, "Not here.", "text/plain"); }
    /// By Range, If-Range and If-None-Match (RFC 9110, 13 and 14); 404 when there is no such file.
    /// Of several ranges in one request none is taken: the whole file is sent.
    static DemoReply ofFile(const QString &path, const DemoRequest &request);

    QByteArray head(bool keepAlive) const;
    qint64 length() const { return file ? fileBytes : body.size(); }
};

} // namespace tavelo
