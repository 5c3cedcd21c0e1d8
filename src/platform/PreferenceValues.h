// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <optional>
#include <variant>

namespace tavelo {

/// A stored preference; which of the four it is belongs to its value.
using PreferenceValue = std::variant<QString, qint64, bool, QByteArray>;

/// How it stands in JSON (RFC 8259): texts, integers and booleans as JSON's own, bytes as an object
/// whose one member "base64" (RFC 4648, 4) holds them.
QJsonValue toJson(const PreferenceValue &value);
/// Absent for any other form.
std::optional<PreferenceValue> preferenceFromJson(const QJsonValue &json);

} // namespace tavelo
