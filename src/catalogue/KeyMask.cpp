// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/KeyMask.h"

#include "platform/Utf8.h"

#include <QRegularExpression>

#include <algorithm>

namespace tavelo::KeyMask {

namespace {

const QString dots = QStringLiteral("\u2022\u2022\u2022");

// What stands before the query, the query, and the rest; the latter two with their signs.
const QRegularExpression &parts()
{
    static const QRegularExpression parts(QStringLiteral("^([^?#]*)(\\?[^#]*)?(#.*)?$"),
                                          QRegularExpression::DotMatchesEverythingOption);
    return parts;
}

// Each value of a query, or the whole item where there is no equals sign.
const QRegularExpression &values()
{
    static const QRegularExpression values(QStringLiteral("(?<=[?&])([^=&]*=)?+([^&]+)"));
    return values;
}

QString maskedPlace(QString place)
{
    static const QRegularExpression user(QStringLiteral("^([^/]*//)?[^/]*@"));
    static const QRegularExpression key(
        QStringLiteral("(?<=[^/]/)(?=[A-Za-z]*[0-9])[A-Za-z0-9]{16,}(?=/|$)"));
    return place.replace(user, QStringLiteral("\\1") + dots + QLatin1Char('@')).replace(key, dots);
}

QStringList secretsOf(const ProviderConfig &config)
{
    constexpr qsizetype shortest = 6; // what is shorter may be any word
    QStringList secrets{config.apiKey};
    const QString query = parts().match(config.baseURL).captured(2);
    for (auto value = values().globalMatch(query); value.hasNext();) {
        const QString secret = value.next().captured(2);
        secrets << secret << Utf8::decoded(QByteArray::fromPercentEncoding(secret.toUtf8()));
    }
    secrets.removeIf([](const QString &secret) { return secret.size() < shortest; });
    // One may hold another.
    std::ranges::sort(secrets, std::ranges::greater(), &QString::size);
    return secrets;
}

} // namespace

QString address(const QString &text)
{
    const auto match = parts().match(text);
    const QString masked = maskedPlace(match.captured(1)) +
                           match.captured(2).replace(values(), QStringLiteral("\\1") + dots);
    return match.captured(3).size() > 1 ? masked + QLatin1Char('#') + dots : masked;
}

QString message(QString text, const ProviderConfig &config)
{
    for (const QString &secret : secretsOf(config))
        text.replace(secret, dots);
    return text;
}

} // namespace tavelo::KeyMask
