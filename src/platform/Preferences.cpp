// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Preferences.h"

#include <QCoreApplication>
#include <QJsonDocument>

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 8LL * 1024 * 1024;

QByteArray encoded(const QJsonObject &values)
{
    return QJsonDocument(values).toJson();
}

} // namespace

Preferences::Preferences(const QString &path)
    : m_file(path, {.name = QCoreApplication::translate("Preferences", "The settings"),
                    .maxBytes = maxFileBytes,
                    .read = [this](const QByteArray &json) { return take(json); },
                    .snapshot = [this] { return [values = m_values] { return encoded(values); }; }})
{
    m_file.read();
}

bool Preferences::take(const QByteArray &json)
{
    const QJsonDocument stored = QJsonDocument::fromJson(json);
    if (!stored.isObject())
        return false;
    const QJsonObject mine = std::exchange(m_values, stored.object());
    for (auto value = mine.begin(); value != mine.end(); ++value)
        m_values.insert(value.key(), value.value());
    return true;
}

void Preferences::set(const QString &key, const PreferenceValue &value)
{
    m_values.insert(key, toJson(value));
    m_file.save();
}

void Preferences::keepAside()
{
    m_file.keepAside(encoded(m_values));
}

} // namespace tavelo
