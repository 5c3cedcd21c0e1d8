// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/YTSParser.h"

#include "catalogue/NetError.h"
#include "catalogue/Text.h"
#include "platform/Json.h"
#include "platform/TextBudget.h"
#include "search/JsonBody.h"
#include "torrent/Magnet.h"

namespace tavelo {

namespace {

struct Movie
{
    QString title;
    std::optional<QString> year;
    std::optional<QUrl> page;
};

std::optional<QUrl> urlIn(const QJsonValue &value)
{
    return Text::url(value.toString());
}

// A fraction is cut off; absent for what no 64 bits hold.
std::optional<qint64> sizeIn(const QJsonValue &value)
{
    constexpr double limit = 9223372036854775808.0;
    const double number = value.toDouble(limit);
    if (const auto whole = Json::integer(value))
        return whole;
    return number > -limit && number < limit ? std::optional(qint64(number)) : std::nullopt;
}

Movie movieOf(const QJsonObject &object)
{
    const auto year = Json::integer(object.value(QLatin1String("year")));
    return {object.value(QLatin1String("title")).toString(QStringLiteral("Untitled")),
            year ? std::optional(QString::number(*year)) : std::nullopt,
            urlIn(object.value(QLatin1String("url")))};
}

QString titleOf(const Movie &movie, const QJsonObject &torrent)
{
    const QString title = movie.title + QLatin1String(" (") +
                          movie.year.value_or(QStringLiteral("?")) + QLatin1String(") ") +
                          torrent.value(QLatin1String("quality")).toString() + QLatin1Char(' ') +
                          torrent.value(QLatin1String("type")).toString();
    return Text::trimmedOfBlanks(title).toString();
}

std::optional<TorrentResult> resultOf(const Movie &movie, const QJsonObject &torrent,
                                      const QString &source)
{
    const QJsonValue hash = torrent.value(QLatin1String("hash"));
    if (!hash.isString())
        return {};
    TorrentResult result;
    result.id = hash.toString().toLower();
    result.title = titleOf(movie, torrent);
    result.size = sizeIn(torrent.value(QLatin1String("size_bytes")));
    result.seeders = Json::integer(torrent.value(QLatin1String("seeds")));
    result.leechers = Json::integer(torrent.value(QLatin1String("peers")));
    result.sources = {source};
    result.infoHash = result.id;
    result.magnet = makeMagnet(hash.toString(), result.title);
    result.torrentURL = urlIn(torrent.value(QLatin1String("url")));
    result.pageURL = movie.page;
    result.year = movie.year;
    return result;
}

QList<QJsonObject> objectsOrNone(const QJsonObject &parent, QLatin1String key)
{
    return objectsIn(parent.value(key)).value_or(QList<QJsonObject>());
}

} // namespace

Result<QList<TorrentResult>> parseYTS(const QByteArray &body, const QString &source)
{
    const auto document = jsonBody(body);
    if (!document)
        return document.error();
    const QJsonValue data = document->object().value(QLatin1String("data"));
    if (!data.isObject())
        return NetError::empty();
    QList<TorrentResult> results;
    qsizetype budget = textBudget(body.size());
    for (const QJsonObject &object : objectsOrNone(data.toObject(), QLatin1String("movies"))) {
        const Movie movie = movieOf(object);
        for (const QJsonObject &torrent : objectsOrNone(object, QLatin1String("torrents"))) {
            const auto result = resultOf(movie, torrent, source);
            if (!result)
                continue;
            results.append(*result);
            budget -= result->title.size();
            if (budget < 0)
                return Error{ErrorKind::Malformed, QStringLiteral("The answer is too large."), 0};
        }
    }
    return results;
}

} // namespace tavelo
