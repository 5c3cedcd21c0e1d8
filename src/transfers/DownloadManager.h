// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TransferSession.h"
#include "storage/SettingsStore.h"
#include "transfers/DownloadTask.h"
#include "transfers/SavedFile.h"

#include <QCoroTask>
#include <QHash>

namespace tavelo {

/// Saves files of the catalogue in the downloads folder, and lists the video files there. Its tasks
/// are those of this run. Main thread only.
class DownloadManager : public QObject, private TransferDelegate
{
    Q_OBJECT
    Q_PROPERTY(QList<tavelo::DownloadTask> tasks READ tasks NOTIFY tasksChanged)
    Q_PROPERTY(QList<tavelo::SavedFile> saved READ saved NOTIFY savedChanged)

public:
    /// What a download must leave free on its volume.
    static constexpr qint64 marginBytes = 200LL * 1024 * 1024;

    /// `settings` must outlive this.
    explicit DownloadManager(SettingsStore &settings, TransferOptions options = {},
                             QObject *parent = nullptr);

    /// Latest first.
    QList<DownloadTask> tasks() const { return m_tasks; }
    /// As of the last refreshSaved, latest first.
    QList<SavedFile> saved() const { return m_saved; }

    /// Starts a download under a name of its own. `expectedSize` is in bytes; with it, the volume
    /// must have room. Gives why it was not started; nothing when it was.
    std::optional<QString> start(const QString &title, const QUrl &url,
                                 std::optional<qint64> expectedSize);
    Q_INVOKABLE void pause(const QUuid &id);
    /// Goes on where it was paused; from the first byte when it cannot, or was over.
    Q_INVOKABLE void resume(const QUuid &id);
    /// Ends the task and forgets it; a finished file stays.
    Q_INVOKABLE void cancel(const QUuid &id);
    /// Among the tasks, which start in their order: to that place, or the nearest there is.
    Q_INVOKABLE void move(const QUuid &id, int place);
    Q_INVOKABLE void clearFinished();
    Q_INVOKABLE void refreshSaved();

Q_SIGNALS:
    void tasksChanged();
    void savedChanged();

private:
    // On the session's thread; each hands its change to the main thread.
    void dataWritten(const TransferInfo &info, qint64 received, qint64 expected) override;
    void finished(const TransferInfo &info, const QString &file) override;
    void completed(const TransferInfo &info, const std::optional<Error> &error) override;
    void paused(const TransferInfo &info, const QByteArray &token) override;

    void launch(const QUuid &id, const QByteArray &token);
    void tookPause(const QUuid &id, const QByteArray &token);
    void updateLater(const QUuid &id, TransferId transfer,
                     std::function<void(DownloadTask &)> change);
    void update(const QUuid &id, const std::function<void(DownloadTask &)> &change);
    bool isTaken(const QString &path) const;
    QCoro::Task<> refreshFlow();

    const SettingsStore &m_settings;
    QList<DownloadTask> m_tasks;
    QList<SavedFile> m_saved;
    QHash<QUuid, TransferId>
        m_transfers; // the latest of each task, until it is paused or cancelled
    QHash<QUuid, QByteArray> m_resumeData;
    TransferSession m_session; // goes first: its thread calls us
};

} // namespace tavelo
