// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Preferences.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 8LL * 1024 * 1024;

QByteArray contentOf(const QString &path)
{
    // A pipe or a device in the file's place would hold up the start.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() <= maxFileBytes ? file.readAll()
                                                                         : QByteArray();
}

} // namespace

Preferences::Preferences(const QString &file)
    : m_file(file)
    , m_values(PreferencesFormat::decoded(contentOf(file)))
{}

void Preferences::set(const QString &key, const PreferenceValue &value)
{
    m_values.insert(key, value);
    QDir().mkpath(QFileInfo(m_file).path());
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner); // it may hold a service's key
    file.write(PreferencesFormat::encoded(m_values));
    file.commit();
}

} // namespace tavelo
