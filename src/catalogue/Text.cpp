// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Text.h"

#include "platform/Decimal.h"

namespace tavelo::Text {

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space;
}

} // namespace

QStringView trimmedOfBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

std::optional<qint64> integer(QStringView text)
{
    return decimal(text.toLatin1()); // what is not in it is no digit either
}

std::optional<QUrl> url(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

QString bounded(const QString &text)
{
    constexpr qsizetype most = 64 * 1024;
    if (text.size() <= most)
        return text;
    return text.first(text.at(most - 1).isHighSurrogate() ? most - 1 : most);
}

QString pathEncoded(const QString &text)
{
    if (!text.isValidUtf16())
        return text;
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "!$&'()*+,:=@/"));
}

} // namespace tavelo::Text
