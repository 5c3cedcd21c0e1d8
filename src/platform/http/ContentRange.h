// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <optional>

namespace tavelo {

/// The part of a file that a 206 answer carries, by the places of its first and last byte.
struct ContentRange
{
    qint64 first = 0;
    qint64 last = 0;
    qint64 total = 0; // bytes of the whole file

    /// RFC 9110, 14.4: `bytes first-last/complete`. Absent also when the total is not told, or the
    /// places cannot be. In the header, for the engine's plugin links no library of ours.
    static std::optional<ContentRange> parse(const QByteArray &header)
    {
        static const QRegularExpression form(
            QStringLiteral("^bytes +([0-9]{1,18})-([0-9]{1,18})/([0-9]{1,18})$"));
        const auto match = form.match(QString::fromLatin1(header));
        const ContentRange range{match.captured(1).toLongLong(), match.captured(2).toLongLong(),
                                 match.captured(3).toLongLong()};
        if (!match.hasMatch() || range.first > range.last || range.last >= range.total)
            return {};
        return range;
    }
};

} // namespace tavelo
