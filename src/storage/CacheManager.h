// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "storage/CacheFolder.h"
#include "storage/SettingsStore.h"

#include <QCoroTask>

namespace tavelo {

/// The cache folder: all that may be thrown away. Where the one of the settings is not ours, the
/// default one is used in its place. The figures are those of the last measurement.
/// Main thread only; walks and removals run on the thread pool and may overlap.
class CacheManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(qint64 usedBytes READ usedBytes NOTIFY usedBytesChanged)
    Q_PROPERTY(qint64 freeBytes READ freeBytes NOTIFY freeBytesChanged)
    Q_PROPERTY(QString folderProblem READ folderProblem NOTIFY folderProblemChanged)

public:
    /// Sets up the response cache, measures, and cleans by the settings' rules. `settings` must
    /// outlive this.
    explicit CacheManager(SettingsStore &settings, QObject *parent = nullptr);

    /// What the files of the cache folder take on disk.
    qint64 usedBytes() const { return m_usedBytes; }
    /// What is free where downloads are saved.
    qint64 freeBytes() const { return m_freeBytes; }

    /// What the user is to know of the settings' folder, if it is not used; else empty.
    QString folderProblem() const;

    /// Where .torrent files to be inspected are put. Created at each call; else why it cannot be.
    Result<QString> torrentDir() const;

    /// Puts the store of HTTP responses, and that of the films opened last, into the cache folder
    /// as the settings name it now.
    Q_INVOKABLE void configureURLCache();
    Q_INVOKABLE void refresh();
    /// Removes the files that are too old, then the oldest until the rest fits, then measures.
    Q_INVOKABLE void enforce();
    /// Removes everything but the store of HTTP responses, and empties that; then measures.
    Q_INVOKABLE void clear();

Q_SIGNALS:
    void usedBytesChanged();
    void freeBytesChanged();
    void folderProblemChanged();

private:
    QCoro::Task<> refreshFlow();
    QCoro::Task<> enforceFlow();
    QCoro::Task<> clearFlow();

    std::optional<CacheFolder> folder() const;

    const SettingsStore &m_settings;
    qint64 m_usedBytes = 0;
    qint64 m_freeBytes = 0;
    CacheFolder::Standing m_standing = CacheFolder::Standing::Ours;
};

} // namespace tavelo
