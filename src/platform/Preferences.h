// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PreferenceValues.h"
#include "platform/files/KeptFile.h"

#include <QJsonObject>

namespace tavelo {

/// The user's preferences: typed values under names, kept as one JSON object in a KeptFile of one
/// process. A value is absent when nothing, or something of another type, is stored under its name;
/// what is stored stays until its own name is set. Main thread only.
class Preferences
{
public:
    /// Reads `path`, once.
    explicit Preferences(const QString &path);

    /// Where they lie, to hear of its troubles and to wait for it.
    KeptFile &file() { return m_file; }
    /// Whether anything, of whatever type, is stored.
    bool contains(const QString &key) const { return m_values.contains(key); }

    std::optional<QString> string(const QString &key) const { return read<QString>(key); }
    std::optional<qint64> integer(const QString &key) const { return read<qint64>(key); }
    std::optional<bool> boolean(const QString &key) const { return read<bool>(key); }
    std::optional<QByteArray> bytes(const QString &key) const { return read<QByteArray>(key); }

    /// Counts at once, and is on disk soon.
    void set(const QString &key, const PreferenceValue &value);
    /// Keeps a copy of all that is stored, and tells of it: of some of it only parts can be used.
    void keepAside();

private:
    template <typename T>
    std::optional<T> read(const QString &key) const
    {
        const auto stored = preferenceFromJson(m_values.value(key));
        const T *value = stored ? std::get_if<T>(&*stored) : nullptr;
        return value ? std::optional(*value) : std::nullopt;
    }

    bool take(const QByteArray &json);

    QJsonObject m_values;
    KeptFile m_file; // goes before the values that it writes
};

} // namespace tavelo
