// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/PreferenceValues.h"

#include "platform/Json.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tavelo::PreferencesFormat {

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

std::optional<PreferenceValue> valueOf(const QJsonValue &json)
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

struct Encoder
{
    QJsonValue operator()(const QByteArray &bytes) const
    {
        return QJsonObject{{bytesMember, QString::fromLatin1(bytes.toBase64())}};
    }
    QJsonValue operator()(const auto &value) const { return value; }
};

} // namespace

PreferenceValues decoded(const QByteArray &file)
{
    const QJsonObject object = QJsonDocument::fromJson(file).object();
    PreferenceValues values;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (const auto value = valueOf(it.value()))
            values.insert(it.key(), *value);
    }
    return values;
}

QByteArray encoded(const PreferenceValues &values)
{
    QJsonObject object;
    for (auto it = values.begin(); it != values.end(); ++it)
        object.insert(it.key(), std::visit(Encoder{}, it.value()));
    return QJsonDocument(object).toJson();
}

} // namespace tavelo::PreferencesFormat
