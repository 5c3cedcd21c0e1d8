// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>

namespace tavelo {

struct DemoRequest
{
    QByteArray method;
    QByteArray target; // path and query, as sent
    QByteArray range;  // headers of that name; empty: none
    QByteArray ifRange;
};

/// An answer of the demo's services: a short text, or a file or part of one.
struct DemoReply
{
    int status = 200;
    QByteArray type = "application/json";
    QByteArray body;
    std::shared_ptr<QIODevice> file; // in place of `body`; stands at its first byte to send
    qint64 fileBytes = 0;            // of `file` to send
    QByteArray headers;              // further lines, each with its line end

    static DemoReply text(int status, const QByteArray &body, const QByteArray &type);
    /// By Range and If-Range (RFC 9110, 13 and 14); 404 when the file is not there.
    static DemoReply ofFile(const QString &path, const DemoRequest &request);

    QByteArray head(bool keepAlive) const;
    qint64 length() const { return file ? fileBytes : body.size(); }
};

} // namespace tavelo
