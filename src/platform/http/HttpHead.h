// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

namespace tavelo {

/// The status line and the header fields of an HTTP/1 answer.
struct HttpHead
{
    static constexpr qsizetype maxBytes = 64 * 1024;

    int status = 0;
    QList<std::pair<QByteArray, QByteArray>> fields = {}; // names in lower case

    /// `text` goes from the status line up to and with the empty line. Absent when it is malformed.
    static std::optional<HttpHead> parse(const QByteArray &text);

    /// The field's values, with ", " between them; empty when it is not there.
    QByteArray field(const char *lowerName) const;
};

} // namespace tavelo
