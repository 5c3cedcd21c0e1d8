// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
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

/// What could be read of a stored list.
template <typename T>
struct Entries
{
    QList<T> whole;
    qsizetype damaged = 0; // how many were left out

    bool operator==(const Entries &) const = default;
};

/// Reads an array of objects one by one with `read`, which is absent for what is no T. Absent when
/// `json` is no array, or nothing of it can be read.
template <typename T>
std::optional<Entries<T>> entriesOf(const QByteArray &json,
                                    std::optional<T> (*read)(const QJsonObject &))
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        return {};
    Entries<T> entries;
    const QJsonArray array = document.array();
    for (const QJsonValue value : array) {
        if (const auto entry = read(value.toObject()))
            entries.whole.append(*entry);
        else
            ++entries.damaged;
    }
    if (entries.whole.isEmpty() && entries.damaged > 0)
        return {};
    return entries;
}

} // namespace tavelo::Json
