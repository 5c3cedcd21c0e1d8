// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonValue>
#include <QVariant>

#include <optional>

namespace tavelo::Json {

/// The value of an integral JSON number (1e3 is one, 1.5 is not) within 64 bits; absent for
/// anything else.
inline std::optional<qint64> integer(const QJsonValue &value)
{
    const QVariant number = value.toVariant();
    return number.typeId() == QMetaType::LongLong ? std::optional(number.toLongLong())
                                                  : std::nullopt;
}

} // namespace tavelo::Json
