// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ApiBayParser.h"

#include "catalogue/NetError.h"
#include "catalogue/Text.h"
#include "platform/Json.h"
#include "search/JsonBody.h"
#include "torrent/Magnet.h"

#include <algorithm>

namespace tavelo {

namespace {

constexpr qsizetype minHashDigits = 32;

// The service writes numbers as texts, its imitators as numbers.
std::optional<qint64> number(const QJsonValue &value)
{
    return value.isString() ? Text::integer(value.toString()) : Json::integer(value);
}

// A search without hits is answered with one row whose hash is all zeros.
bool isPlaceholder(const QString &hash)
{
    return std::ranges::all_of(hash, [](QChar c) { return c == QLatin1Char('0'); });
}

std::optional<TorrentResult> resultOf(const QJsonObject &row, const QString &source)
{
    const QJsonValue name = row.value(QLatin1String("name"));
    const QString hash = row.value(QLatin1String("info_hash")).toString();
    if (!name.isString() || hash.size() < minHashDigits || isPlaceholder(hash))
        return {};
    TorrentResult result;
    result.id = hash.toLower();
    result.title = name.toString();
    result.size = number(row.value(QLatin1String("size")));
    result.seeders = number(row.value(QLatin1String("seeders")));
    result.leechers = number(row.value(QLatin1String("leechers")));
    result.sources = {source};
    result.infoHash = result.id;
    result.magnet = makeMagnet(hash, result.title);
    return result;
}

} // namespace

Result<QList<TorrentResult>> parseApiBay(const QByteArray &body, const QString &source)
{
    const auto document = jsonBody(body);
    if (!document)
        return document.error();
    const auto rows = objectsIn(document->isArray() ? document->array() : QJsonValue());
    if (!rows)
        return NetError::empty();
    QList<TorrentResult> results;
    for (const QJsonObject &row : *rows) {
        if (const auto result = resultOf(row, source))
            results.append(*result);
    }
    return results;
}

} // namespace tavelo
