// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Preferences.h"

#include "platform/FileContent.h"

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 8LL * 1024 * 1024;

} // namespace

Preferences::Preferences(const QString &file)
    : m_file(file)
    , m_values(PreferencesFormat::decoded(FileContent::read(file, maxFileBytes)))
{}

void Preferences::set(const QString &key, const PreferenceValue &value)
{
    m_values.insert(key, value);
    FileContent::replace(m_file, PreferencesFormat::encoded(m_values));
}

} // namespace tavelo
