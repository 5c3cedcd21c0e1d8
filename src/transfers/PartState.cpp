// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/PartState.h"

#include "platform/Json.h"

#include <QJsonArray>

namespace tavelo {

namespace {

constexpr QLatin1String sourceKey("source");
constexpr QLatin1String totalKey("total");
constexpr QLatin1String validatorKey("validator");
constexpr QLatin1String doneKey("done");
constexpr QLatin1String sealedKey("sealed");
constexpr qsizetype mostSpans = 1000;
constexpr qint64 mostBytes = 1LL << 60;

std::optional<ByteSpan> spanOf(const QJsonValue &value, qint64 total)
{
    const QJsonArray places = value.toArray();
    const qint64 first = Json::integer(places.at(0)).value_or(-1);
    const qint64 end = Json::integer(places.at(1)).value_or(-1);
    const qint64 most = total < 0 ? mostBytes : total;
    return first >= 0 && first < end && end <= most ? std::optional(ByteSpan{first, end})
                                                    : std::nullopt;
}

} // namespace

QJsonObject PartState::toJson() const
{
    QJsonArray spans;
    for (const ByteSpan &span : done.all())
        spans.append(QJsonArray{span.first, span.end});
    return {{sourceKey, version.source.toString(QUrl::FullyEncoded)},
            {totalKey, version.total},
            {validatorKey, QString::fromLatin1(version.validator)},
            {doneKey, spans},
            {sealedKey, sealed}};
}

std::optional<PartState> PartState::fromJson(const QJsonObject &object)
{
    PartState state;
    state.version = {QUrl(object.value(sourceKey).toString(), QUrl::StrictMode),
                     Json::integer(object.value(totalKey)).value_or(-1),
                     object.value(validatorKey).toString().toLatin1()};
    state.sealed = object.value(sealedKey).toBool();
    const QJsonArray spans = object.value(doneKey).toArray();
    if (!object.value(doneKey).isArray() || spans.size() > mostSpans)
        return {};
    for (const QJsonValue value : spans) {
        const auto span = spanOf(value, state.version.total);
        if (!span)
            return {};
        state.done.add(*span);
    }
    return state;
}

} // namespace tavelo
