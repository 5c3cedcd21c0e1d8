// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/JsonBody.h"

namespace tavelo {

Result<QJsonDocument> jsonBody(const QByteArray &body)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError)
        return Error{ErrorKind::Malformed, error.errorString(), 0};
    return document;
}

std::optional<QList<QJsonObject>> objectsIn(const QJsonValue &value)
{
    if (!value.isArray())
        return {};
    const QJsonArray array = value.toArray();
    QList<QJsonObject> objects;
    objects.reserve(array.size());
    for (const QJsonValue &element : array) {
        if (!element.isObject())
            return {};
        objects.append(element.toObject());
    }
    return objects;
}

} // namespace tavelo
