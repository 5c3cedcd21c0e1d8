// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/Format.h"

#include "catalogue/Fmt.h"

namespace tavelo {

QString Format::time(double seconds)
{
    return Fmt::time(seconds);
}

QString Format::watched(double seconds)
{
    return Fmt::time(seconds) + QStringLiteral(" watched");
}

QString Format::byteCount(qint64 bytes)
{
    return Fmt::byteCount(bytes);
}

QString Format::rate(double rate)
{
    return QString::number(rate, 'g', 6) + QLatin1Char('x');
}

QUrl Format::fileAddress(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

} // namespace tavelo
