// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PreferenceValues.h"

#include <QJsonObject>

namespace tavelo {

/// The user's preferences: typed values under names, kept as one JSON object in a file of one
/// process. A value is absent when nothing, or something of another type, is stored under its name;
/// what is stored stays until its own name is set. Main thread only.
class Preferences
{
public:
    /// Reads `file`, once. One that is missing, torn, foreign or no regular file reads as empty.
    explicit Preferences(const QString &file);

    std::optional<QString> string(const QString &key) const { return read<QString>(key); }
    std::optional<qint64> integer(const QString &key) const { return read<qint64>(key); }
    std::optional<bool> boolean(const QString &key) const { return read<bool>(key); }
    std::optional<QByteArray> bytes(const QString &key) const { return read<QByteArray>(key); }

    /// Stores the value and puts the whole file in place of the old one before it returns, with its
    /// data on disk first. A failure leaves the old file; the value counts in this process only. An
    /// old file that could not be read is put aside, not lost.
    void set(const QString &key, const PreferenceValue &value);

private:
    template <typename T>
    std::optional<T> read(const QString &key) const
    {
        const auto stored = preferenceFromJson(m_values.value(key));
        const T *value = stored ? std::get_if<T>(&*stored) : nullptr;
        return value ? std::optional(*value) : std::nullopt;
    }

    const QString m_file;
    QJsonObject m_values;
    bool m_fileIsForeign = false; // there, and no preferences
};

} // namespace tavelo
