// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>

namespace tavelo {

struct FetchHead;

enum class SameFile {
    Yes,
    Perhaps, // nothing speaks against it: compare bytes of both
    No,
};

/// Which version of a file a body carries, as far as its headers tell.
struct BodyVersion
{
    QUrl source = {};  // where the body came from, after redirects
    qint64 total = -1; // bytes of the whole file; -1: not told
    QByteArray validator =
        {}; // strong ETag or date; empty: the version cannot be told from another

    bool operator==(const BodyVersion &) const = default;

    /// Of an answer 200 or 206. The validator is a strong ETag, or else a Last-Modified that counts
    /// as strong (RFC 9110, 8.8.2.2).
    static BodyVersion of(const FetchHead &head);

    /// Whether both are one version of one film or download, for which several hosts may answer.
    /// Files of different sizes never are. A tag says something within its host, a date within its
    /// address; elsewhere neither proves anything.
    SameFile compare(const BodyVersion &other) const;

    /// What an If-Range says when `url` is asked; empty when that is not what answered, for another
    /// host would take its own validator for the only one and send the whole file.
    QByteArray ifRangeFor(const QUrl &url) const
    {
        return url == source ? validator : QByteArray();
    }
};

} // namespace tavelo
