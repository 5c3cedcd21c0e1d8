// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/DownloadManager.h"

#include "catalogue/Fmt.h"
#include "platform/ThreadPool.h"
#include "platform/files/FolderWalk.h"
#include "transfers/DownloadName.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <filesystem>
#include <limits>

namespace tavelo {

namespace {

// What links a transfer with its task: the session hands it back.
struct Ident
{
    QUuid id;
    QString dest;
};

QString textOf(const Ident &ident)
{
    return ident.id.toString(QUuid::WithoutBraces).toUpper() + QLatin1Char('|') + ident.dest;
}

Ident identOf(const TransferInfo &info)
{
    const qsizetype bar = info.description.indexOf(QLatin1Char('|'));
    return {QUuid::fromString(info.description.first(bar)), info.description.sliced(bar + 1)};
}

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

// Empty when it is there.
QString makeFolder(const QString &path)
{
    std::error_code error;
    std::filesystem::create_directories(nativePath(path), error);
    return QString::fromLocal8Bit(QByteArray::fromStdString(error ? error.message() : ""));
}

// In place of any file there. Empty when it is done.
QString moveFile(const QString &from, const QString &to)
{
    if (const QString reason = refusal(to); !reason.isEmpty())
        return reason;
    std::error_code error;
    std::filesystem::rename(nativePath(from), nativePath(to), error);
    return QString::fromLocal8Bit(QByteArray::fromStdString(error ? error.message() : ""));
}

// A link counts, wherever it leads.
bool isThere(const QString &path)
{
    std::error_code error;
    return exists(symlink_status(nativePath(path), error));
}

bool hasRoom(const QString &folder, qint64 size)
{
    return size <= std::numeric_limits<qint64>::max() - DownloadManager::marginBytes &&
           FolderWalk::freeSpace(folder) >= size + DownloadManager::marginBytes;
}

} // namespace

DownloadManager::DownloadManager(SettingsStore &settings, TransferOptions options, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_session(*this, options)
{
    m_session.sweep(m_settings.downloadsPath());
    refreshSaved();
}

std::optional<QString> DownloadManager::start(const QString &title, const QUrl &url,
                                              std::optional<qint64> expectedSize)
{
    const QString folder = m_settings.downloadsPath();
    if (const QString reason = makeFolder(folder); !reason.isEmpty())
        return QStringLiteral("Cannot create downloads folder: ") + reason;
    if (expectedSize && !hasRoom(folder, *expectedSize))
        return QStringLiteral("Not enough free disk space for ") + Fmt::byteCount(*expectedSize) +
               QLatin1Char('.');
    DownloadTask task;
    task.id = QUuid::createUuid();
    task.title = title;
    task.url = url;
    task.dest = freeDestination(folder, downloadName(url),
                                [this](const QString &path) { return isTaken(path); });
    task.expected = expectedSize.value_or(0);
    m_tasks.prepend(task);
    Q_EMIT tasksChanged();
    launch(task.id, {});
    return {};
}

bool DownloadManager::isTaken(const QString &path) const
{
    return isThere(path) || std::ranges::any_of(m_tasks, [&](const DownloadTask &task) {
               return task.dest == path && !task.is<DownloadTask::Finished>();
           });
}

void DownloadManager::launch(const QUuid &id, const QByteArray &token)
{
    const auto task = std::ranges::find(m_tasks, id, &DownloadTask::id);
    if (task == m_tasks.end())
        return;
    DownloadTask::State state = DownloadTask::Downloading{};
    if (const QString reason = refusal(task->dest); !reason.isEmpty())
        state = DownloadTask::Failed{reason};
    else
        m_transfers.insert(id, m_session.start({task->url, QFileInfo(task->dest).path(),
                                                textOf({id, task->dest}), token}));
    update(id, [&](DownloadTask &changed) { changed.state = state; });
}

void DownloadManager::pause(const QUuid &id)
{
    if (const auto transfer = m_transfers.constFind(id); transfer != m_transfers.constEnd()) {
        m_session.pause(*transfer);
        m_transfers.remove(id);
    }
}

void DownloadManager::resume(const QUuid &id)
{
    // One that still runs would write to the same place.
    if (const auto transfer = m_transfers.constFind(id); transfer != m_transfers.constEnd())
        m_session.cancel(*transfer);
    launch(id, m_resumeData.take(id));
}

void DownloadManager::cancel(const QUuid &id)
{
    if (const auto transfer = m_transfers.constFind(id); transfer != m_transfers.constEnd())
        m_session.cancel(*transfer);
    m_transfers.remove(id);
    if (const QByteArray token = m_resumeData.take(id); !token.isEmpty())
        m_session.discard(token);
    m_tasks.removeIf([&](const DownloadTask &task) { return task.id == id; });
    Q_EMIT tasksChanged();
}

void DownloadManager::move(const QUuid &id, int place)
{
    const auto task = std::ranges::find(m_tasks, id, &DownloadTask::id);
    if (task == m_tasks.end())
        return;
    m_tasks.move(task - m_tasks.begin(), std::clamp<qsizetype>(place, 0, m_tasks.size() - 1));
    Q_EMIT tasksChanged();
}

void DownloadManager::clearFinished()
{
    m_tasks.removeIf([](const DownloadTask &task) {
        return task.is<DownloadTask::Finished>() || task.is<DownloadTask::Failed>();
    });
    Q_EMIT tasksChanged();
}

void DownloadManager::refreshSaved()
{
    refreshFlow();
}

QCoro::Task<> DownloadManager::refreshFlow()
{
    const QPointer<DownloadManager> self(this);
    const auto listed =
        runOnPool([folder = m_settings.downloadsPath()] { return savedFilesIn(folder); });
    const QList<SavedFile> saved = co_await listed;
    if (!self)
        co_return;
    m_saved = saved;
    Q_EMIT savedChanged();
}

void DownloadManager::dataWritten(const TransferInfo &info, qint64 received, qint64 expected)
{
    updateLater(identOf(info).id, info.id, [received, expected](DownloadTask &task) {
        task.received = received;
        if (expected > 0)
            task.expected = expected;
    });
}

void DownloadManager::finished(const TransferInfo &info, const QString &file)
{
    const Ident ident = identOf(info);
    const QString reason = info.status < 200 || info.status > 299
                               ? QStringLiteral("HTTP %1").arg(info.status)
                               : moveFile(file, ident.dest);
    updateLater(ident.id, info.id, [this, reason](DownloadTask &task) {
        if (!reason.isEmpty()) {
            task.state = DownloadTask::Failed{reason};
            return;
        }
        task.state = DownloadTask::Finished{};
        task.received = task.expected;
        refreshSaved();
    });
}

void DownloadManager::completed(const TransferInfo &info, const std::optional<Error> &error)
{
    if (!error || error->kind == ErrorKind::Cancelled)
        return;
    updateLater(identOf(info).id, info.id, [text = error->text](DownloadTask &task) {
        task.state = DownloadTask::Failed{text};
    });
}

void DownloadManager::paused(const TransferInfo &info, const QByteArray &token)
{
    QMetaObject::invokeMethod(this, [this, id = identOf(info).id, token] { tookPause(id, token); });
}

void DownloadManager::tookPause(const QUuid &id, const QByteArray &token)
{
    const bool isThere = std::ranges::find(m_tasks, id, &DownloadTask::id) != m_tasks.end();
    // Cancelled, or resumed before the pause had come about: the token serves nobody.
    if (!isThere || m_transfers.contains(id)) {
        if (!token.isEmpty())
            m_session.discard(token);
        return;
    }
    if (!token.isEmpty())
        m_resumeData.insert(id, token);
    else
        m_resumeData.remove(id);
    update(id, [](DownloadTask &task) { task.state = DownloadTask::Paused{}; });
}

void DownloadManager::updateLater(const QUuid &id, TransferId transfer,
                                  std::function<void(DownloadTask &)> change)
{
    QMetaObject::invokeMethod(this, [this, id, transfer, change = std::move(change)] {
        // A task that was started anew takes nothing from its earlier transfer.
        const auto latest = m_transfers.constFind(id);
        if (latest == m_transfers.constEnd() || *latest == transfer)
            update(id, change);
    });
}

void DownloadManager::update(const QUuid &id, const std::function<void(DownloadTask &)> &change)
{
    const auto task = std::ranges::find(m_tasks, id, &DownloadTask::id);
    if (task == m_tasks.end())
        return;
    change(*task);
    Q_EMIT tasksChanged();
}

} // namespace tavelo
