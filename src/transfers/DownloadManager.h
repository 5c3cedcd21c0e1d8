// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/KeptFile.h"
#include "storage/SettingsStore.h"
#include "transfers/DownloadRecord.h"
#include "transfers/SavedFile.h"
#include "transfers/SpeedMeter.h"
#include "transfers/Transfer.h"

#include <QCoroTask>
#include <QTimer>

#include <map>

namespace tavelo {

struct DownloadOptions
{
    TransferOptions transfer = {};
    int mostAtOnce = 4;
    int mostTries = 5;                          // by itself, in a row
    std::chrono::milliseconds firstPause{1000}; // between two of them; doubled each time
};

/// What the catalogue says of a file beyond its address.
struct DownloadOrigin
{
    QString item = {}; // its identifier
    Checksum checksum = {};
};

/// Saves files of the catalogue in the downloads folder, and lists the video files there. Its tasks
/// live in a KeptFile until the user clears them: what was underway goes on with the next start of
/// the program. Main thread only.
class DownloadManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<tavelo::DownloadTask> tasks READ tasks NOTIFY tasksChanged)
    Q_PROPERTY(QList<tavelo::SavedFile> saved READ saved NOTIFY savedChanged)

public:
    /// What downloads must leave free on their volume.
    static constexpr qint64 marginBytes = 200LL * 1024 * 1024;

    /// Reads the kept tasks; those that were underway go on when the event loop runs. `settings`
    /// and `fetch` must outlive this.
    DownloadManager(SettingsStore &settings, Fetch &fetch, DownloadOptions options = {},
                    QObject *parent = nullptr);
    /// Waits until what the running ones have is on the disk.
    ~DownloadManager() override;

    /// Latest first, but those that wait in the order in which they will start.
    QList<DownloadTask> tasks() const { return m_tasks; }
    /// As of the last refreshSaved, latest first.
    QList<SavedFile> saved() const { return m_saved; }

    /// Starts a download under a name of its own. `expectedSize` is in bytes; with it, the volume
    /// must have room for it and for all that is underway. Gives why it was not started; nothing
    /// when it was.
    std::optional<QString> start(const QString &title, const QUrl &url,
                                 std::optional<qint64> expectedSize,
                                 const DownloadOrigin &origin = {});
    Q_INVOKABLE void pause(const QUuid &id);
    /// Goes on with what is there of it, or tries again; one that is finished is fetched anew.
    Q_INVOKABLE void resume(const QUuid &id);
    /// Ends the task and forgets it; a finished file stays.
    Q_INVOKABLE void cancel(const QUuid &id);
    /// Among the tasks: to that place, or the nearest there is.
    Q_INVOKABLE void move(const QUuid &id, int place);
    Q_INVOKABLE void clearFinished();
    Q_INVOKABLE void refreshSaved();

    /// Where the tasks lie, to hear of its troubles and to wait for it.
    KeptFile &file() { return m_file; }

Q_SIGNALS:
    void tasksChanged();
    void savedChanged();

private:
    using Clock = std::chrono::steady_clock;

    /// What a task needs besides what is shown of it.
    struct Run
    {
        Checksum checksum = {};
        PartState part = {};
        std::unique_ptr<Transfer> transfer = {};           // until it has told of its end
        DownloadTask::State next = DownloadTask::Paused{}; // when it has been stopped
        SpeedMeter meter = {};
        int tries = 0;             // that broke off, in a row
        qint64 receivedBefore = 0; // when the transfer began
        Clock::time_point nextTry = {};
    };

    bool takeKept(const QByteArray &json);
    DownloadList list() const;
    void sweep();
    void schedule();
    void launch(DownloadTask &task);
    void stop(const QUuid &id, const DownloadTask::State &next);
    void progressed(const QUuid &id, const TransferProgress &progress);
    void ended(const QUuid &id, const TransferEnd &end);
    DownloadTask::State stateAfter(const DownloadTask &task, const TransferEnd &end);
    DownloadTask::State retryAfter(Run &run, const QString &reason,
                                   std::chrono::milliseconds pause);
    void countDown();
    void forget(const QUuid &id);
    void changed();
    DownloadTask *find(const QUuid &id);
    qsizetype running() const;
    bool hasRoom(const QString &folder, qint64 size) const;
    bool isTaken(const QString &path) const;
    QCoro::Task<> refreshFlow();

    const SettingsStore &m_settings;
    Fetch &m_fetch;
    const DownloadOptions m_options;
    QList<DownloadTask> m_tasks;
    std::map<QUuid, Run> m_runs;                      // one for each task
    std::vector<std::unique_ptr<Transfer>> m_leaving; // of tasks that are forgotten
    QStringList m_folders;
    bool m_isWhole = true; // all that is kept could be read
    QList<SavedFile> m_saved;
    QTimer m_clock; // of what tries again by itself
    KeptFile m_file;
};

} // namespace tavelo
