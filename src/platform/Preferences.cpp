// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Preferences.h"

#include "platform/FileContent.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <utility>

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 8LL * 1024 * 1024;

} // namespace

Preferences::Preferences(const QString &file)
    : m_file(file)
{
    const QJsonDocument stored = QJsonDocument::fromJson(FileContent::read(file, maxFileBytes));
    m_values = stored.object();
    m_fileIsForeign = !stored.isObject() && QFileInfo::exists(file);
}

void Preferences::set(const QString &key, const PreferenceValue &value)
{
    m_values.insert(key, toJson(value));
    if (std::exchange(m_fileIsForeign, false)) {
        const QString aside = m_file + QLatin1String(".unreadable");
        QFile::remove(aside);
        QFile::rename(m_file, aside);
    }
    FileContent::replace(m_file, QJsonDocument(m_values).toJson());
}

} // namespace tavelo
