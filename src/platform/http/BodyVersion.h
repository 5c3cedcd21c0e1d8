// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>

namespace tavelo {

struct HttpHead;

/// Which version of a file a body carries, as far as its headers tell.
struct BodyVersion
{
    QUrl source = {};          // where the body came from, after redirects
    qint64 total = -1;         // bytes of the whole file; -1: not told
    QByteArray validator = {}; // for If-Range; empty: the version cannot be told from another

    bool operator==(const BodyVersion &) const = default;

    /// Of an answer that carries a whole file of `length` bytes. The validator is a strong ETag, or
    /// else a Last-Modified that counts as strong (RFC 9110, 8.8.2.2).
    static BodyVersion of(const HttpHead &head, const QUrl &source, qint64 length);

    /// Whether a 206 answer brings exactly the rest of this version after its first `from` bytes.
    bool isContinuedBy(const HttpHead &head, const QUrl &answering, qint64 from) const;
};

} // namespace tavelo
