// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/ByteRange.h"

#include <QRegularExpression>

#include <algorithm>

namespace tavelo {

std::optional<ByteRange> ByteRange::parsed(const QByteArray &header, qint64 size)
{
    static const QRegularExpression form(QStringLiteral("^bytes=([0-9]{0,18})-([0-9]{0,18})$"));
    const auto match = form.match(QString::fromLatin1(header));
    const QString first = match.captured(1);
    const QString last = match.captured(2);
    if (!match.hasMatch() || (first.isEmpty() && last.isEmpty()))
        return {};
    if (first.isEmpty()) // the file's end, so many bytes of it
        return ByteRange{std::max<qint64>(size - last.toLongLong(), 0), size - 1};
    if (last.isEmpty())
        return ByteRange{first.toLongLong(), size - 1};
    if (last.toLongLong() < first.toLongLong())
        return {};
    return ByteRange{first.toLongLong(), std::min(last.toLongLong(), size - 1)};
}

} // namespace tavelo
