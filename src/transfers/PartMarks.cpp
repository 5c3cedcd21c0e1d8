// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/PartMarks.h"

#include "platform/files/FileContent.h"
#include "storage/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <unistd.h>

namespace tavelo {

namespace {

constexpr QLatin1String runKey("run");
constexpr QLatin1String suffix(".marks");
constexpr qint64 maxBytes = 64 * 1024;

QString folder()
{
    return SettingsStore::appSupport() + QLatin1String("/Downloads");
}

/// Another one after each start of the system; empty: not known.
QString currentRun()
{
    static const QString run = [] {
        QFile file(QStringLiteral("/proc/sys/kernel/random/boot_id"));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll().trimmed())
                                              : QString();
    }();
    return run;
}

} // namespace

QString PartMarks::pathOf(const QString &name)
{
    return folder() + QLatin1Char('/') + name + suffix;
}

std::optional<PartState> PartMarks::read(const QString &path)
{
    const QJsonObject object = QJsonDocument::fromJson(FileContent::read(path, maxBytes)).object();
    if (currentRun().isEmpty() || object.value(runKey).toString() != currentRun())
        return {};
    return PartState::fromJson(object);
}

void PartMarks::sweep(const QStringList &spared)
{
    const QDir dir(folder());
    for (const QString &file : dir.entryList({QLatin1Char('*') + suffix}, QDir::Files)) {
        if (!spared.contains(file.chopped(suffix.size())))
            QFile::remove(dir.filePath(file));
    }
}

PartMarks::PartMarks(const QString &path)
    : m_file(path)
{
    QDir().mkpath(QFileInfo(path).path());
    if (m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
        m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        m_written = m_file.size();
    }
}

void PartMarks::write(const PartState &state)
{
    QJsonObject object = state.toJson();
    object.insert(runKey, currentRun());
    QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    // In one piece, and never shorter, so that there is no moment with a half of it.
    m_written = std::max(m_written, text.size());
    text.append(m_written - text.size(), ' ');
    if (m_file.isOpen())
        (void)!::pwrite(m_file.handle(), text.constData(), static_cast<size_t>(text.size()), 0);
}

} // namespace tavelo
