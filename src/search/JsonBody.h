// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

namespace tavelo {

/// An answer's body as JSON; ErrorKind::Malformed with the parser's own words when it is none.
Result<QJsonDocument> jsonBody(const QByteArray &body);

/// The elements of an array in which every element is an object; absent for anything else.
std::optional<QList<QJsonObject>> objectsIn(const QJsonValue &value);

} // namespace tavelo
