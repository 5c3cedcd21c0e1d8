// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Fmt.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace tavelo::Fmt {

namespace {

QString twoDigits(qint64 number)
{
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

/// What the pattern <[^>]+> would remove, in one pass: a text of many "<" and no ">" must not take
/// quadratic time.
QString withoutTags(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    qsizetype from = 0;
    for (;;) {
        const qsizetype open = text.indexOf(QLatin1Char('<'), from);
        const qsizetype close = open < 0 ? -1 : text.indexOf(QLatin1Char('>'), open + 1);
        if (close < 0)
            break;
        const bool isTag = close > open + 1;
        plain += QStringView(text).sliced(from, (isTag ? open : open + 1) - from);
        from = isTag ? close + 1 : open + 1;
    }
    return plain += QStringView(text).sliced(from);
}

} // namespace

QString time(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0)
        return QStringLiteral("0:00");
    constexpr auto most = std::numeric_limits<qint64>::max();
    const qint64 whole = seconds < static_cast<double>(most) ? static_cast<qint64>(seconds) : most;
    const qint64 minutes = whole / 60 % 60;
    if (whole < 3600)
        return QStringLiteral("%1:%2").arg(minutes).arg(twoDigits(whole % 60));
    return QStringLiteral("%1:%2:%3")
        .arg(whole / 3600)
        .arg(twoDigits(minutes), twoDigits(whole % 60));
}

std::optional<QString> stripHTML(const std::optional<QString> &text)
{
    if (!text)
        return {};
    static const QRegularExpression lineBreak(QStringLiteral("<br\\s*/?>"));
    QString plain = *text;
    plain.replace(lineBreak, QStringLiteral("\n"));
    plain = withoutTags(plain);
    plain.replace(QLatin1String("&amp;"), QLatin1String("&"));
    plain.replace(QLatin1String("&quot;"), QLatin1String("\""));
    plain.replace(QLatin1String("&#39;"), QLatin1String("'"));
    plain.replace(QLatin1String("&nbsp;"), QLatin1String(" "));
    plain = plain.trimmed();
    return plain.isEmpty() ? std::nullopt : std::optional(plain);
}

QString byteCount(std::optional<qint64> bytes)
{
    if (!bytes || *bytes < 0)
        return QStringLiteral("—");
    return QLocale::c().formattedDataSize(*bytes, 1, QLocale::DataSizeSIFormat);
}

} // namespace tavelo::Fmt
