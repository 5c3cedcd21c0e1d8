// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/PreferenceValues.h"

#include "platform/Json.h"

#include <QJsonObject>

namespace tavelo {

namespace {

constexpr QLatin1String bytesMember("base64");

std::optional<PreferenceValue> bytesOf(const QJsonObject &object)
{
    const QJsonValue text = object.value(bytesMember);
    if (object.size() != 1 || !text.isString())
        return {};
    const auto bytes = QByteArray::fromBase64Encoding(text.toString().toLatin1(),
                                                      QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? std::optional<PreferenceValue>(*bytes) : std::nullopt;
}

struct Encoder
{
    QJsonValue operator()(const QByteArray &bytes) const
    {
        return QJsonObject{{bytesMember, QString::fromLatin1(bytes.toBase64())}};
    }
    QJsonValue operator()(const auto &value) const { return value; }
};

} // namespace

QJsonValue toJson(const PreferenceValue &value)
{
    return std::visit(Encoder{}, value);
}

std::optional<PreferenceValue> preferenceFromJson(const QJsonValue &json)
{
    if (json.isString())
        return json.toString();
    if (json.isBool())
        return json.toBool();
    if (json.isObject())
        return bytesOf(json.toObject());
    if (const auto number = Json::integer(json))
        return *number;
    return {};
}

} // namespace tavelo
