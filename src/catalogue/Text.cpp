// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Text.h"

#include <algorithm>

namespace tavelo::Text {

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char('\t') || c.category() == QChar::Separator_Space;
}

} // namespace

QString trimmedOfBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text.toString();
}

std::optional<qint64> integer(QStringView text)
{
    const bool isSigned = text.startsWith(QLatin1Char('+')) || text.startsWith(QLatin1Char('-'));
    const QStringView digits = text.sliced(isSigned ? 1 : 0);
    const auto isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    if (digits.isEmpty() || !std::ranges::all_of(digits, isDigit))
        return {};
    bool fits = false;
    const qint64 value = text.toLongLong(&fits);
    return fits ? std::optional(value) : std::nullopt;
}

std::optional<QUrl> url(const QString &text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

QString pathEncoded(const QString &text)
{
    if (!text.isValidUtf16())
        return text;
    return QString::fromLatin1(QUrl::toPercentEncoding(text, "!$&'()*+,:=@/"));
}

} // namespace tavelo::Text
