// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/DownloadManager.h"

#include "catalogue/Fmt.h"
#include "platform/ThreadPool.h"
#include "platform/files/FolderWalk.h"
#include "transfers/DownloadName.h"
#include "transfers/PartMarks.h"

#include <QCoroFuture>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>
#include <filesystem>
#include <limits>

namespace tavelo {

namespace {

constexpr qint64 maxFileBytes = 64LL * 1024 * 1024;
constexpr qsizetype mostFolders = 100;
constexpr qint64 worthwhileBytes = 1024LL * 1024; // a try that brought them was no failure

QString nameOf(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces);
}

QString folderOf(const DownloadTask &task)
{
    return QFileInfo(task.dest).path();
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

// A link counts, wherever it leads.
bool isThere(const QString &path)
{
    std::error_code error;
    return exists(symlink_status(nativePath(path), error));
}

dev_t volumeOf(const QString &folder)
{
    const auto id = OpenFolder::idAt(folder);
    return id ? id->device : dev_t{};
}

int secondsUntil(std::chrono::steady_clock::time_point then)
{
    const auto left =
        std::chrono::ceil<std::chrono::seconds>(then - std::chrono::steady_clock::now());
    return std::max(static_cast<int>(left.count()), 1);
}

void removeParts(const QString &part, const QString &name)
{
    QFile::remove(part);
    QFile::remove(PartMarks::pathOf(name));
}

} // namespace

DownloadManager::DownloadManager(SettingsStore &settings, Fetch &fetch, DownloadOptions options,
                                 QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_fetch(fetch)
    , m_options(std::move(options))
    , m_file(SettingsStore::appSupport() + QLatin1String("/downloads.json"),
             {.name = tr("The list of downloads"),
              .maxBytes = maxFileBytes,
              .read = [this](const QByteArray &json) { return takeKept(json); },
              .snapshot = [this] { return [list = list()] { return list.toJson(); }; }})
{
    m_clock.setSingleShot(true);
    connect(&m_clock, &QTimer::timeout, this, &DownloadManager::countDown);
    m_file.read();
    sweep();
    if (std::ranges::any_of(m_tasks, &DownloadTask::isWaiting))
        QMetaObject::invokeMethod(this, &DownloadManager::schedule, Qt::QueuedConnection);
    refreshSaved();
}

DownloadManager::~DownloadManager()
{
    for (const auto &[id, run] : m_runs) {
        if (run.transfer)
            run.transfer->stop();
    }
    for (DownloadTask &task : m_tasks) {
        Run &run = m_runs[task.id];
        if (!run.transfer)
            continue;
        const TransferEnd end = run.transfer->waitForEnd();
        run.part = end.part;
        if (end.result == TransferResult::Saved)
            task.state = DownloadTask::Finished{end.isChecked};
    }
    m_file.save();
}

bool DownloadManager::takeKept(const QByteArray &json)
{
    const auto kept = DownloadList::fromJson(json);
    if (!kept) {
        m_isWhole = false;
        return false;
    }
    for (const DownloadRecord &record : kept->records) {
        if (m_runs.contains(record.task.id))
            continue;
        m_tasks.append(record.task);
        Run &run = m_runs[record.task.id];
        run.checksum = record.checksum;
        run.part = record.part;
    }
    for (const QString &folder : kept->folders) {
        if (!m_folders.contains(folder))
            m_folders.append(folder);
    }
    if (kept->damaged > 0) {
        m_isWhole = false;
        m_file.keepAside(json);
    }
    Q_EMIT tasksChanged();
    return true;
}

DownloadList DownloadManager::list() const
{
    DownloadList list{.folders = m_folders};
    for (const DownloadTask &task : m_tasks) {
        const Run &run = m_runs.at(task.id);
        list.records.append({task, run.checksum, run.part});
    }
    return list;
}

/// Of parts that no task knows any more, unless there may be tasks that are not known here.
void DownloadManager::sweep()
{
    if (!m_isWhole || m_file.isClosed())
        return;
    QStringList names;
    for (const DownloadTask &task : m_tasks)
        names.append(nameOf(task.id));
    runOnPool([names, folders = m_folders + QStringList{m_settings.downloadsPath()}] {
        for (const QString &folder : folders)
            PartFile::sweep(folder, names);
        PartMarks::sweep(names);
    });
}

std::optional<QString> DownloadManager::start(const QString &title, const QUrl &url,
                                              std::optional<qint64> expectedSize,
                                              const DownloadOrigin &origin)
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
    task.item = origin.item;
    task.url = url;
    task.dest = freeDestination(folder, downloadName(url),
                                [this](const QString &path) { return isTaken(path); });
    task.expected = expectedSize.value_or(0);
    m_runs[task.id].checksum = origin.checksum;
    const auto lastWaiting =
        std::ranges::find_if(m_tasks.rbegin(), m_tasks.rend(), &DownloadTask::isWaiting);
    m_tasks.insert(lastWaiting == m_tasks.rend() ? m_tasks.begin() : lastWaiting.base(), task);
    m_folders.removeAll(folder);
    m_folders.prepend(folder);
    m_folders.resize(std::min(m_folders.size(), mostFolders));
    schedule();
    return {};
}

bool DownloadManager::isTaken(const QString &path) const
{
    return isThere(path) || std::ranges::any_of(m_tasks, [&](const DownloadTask &task) {
               return task.dest == path && !task.is<DownloadTask::Finished>();
           });
}

/// Beside all that is underway on the same volume.
bool DownloadManager::hasRoom(const QString &folder, qint64 size) const
{
    qint64 left = FolderWalk::freeSpace(folder) - marginBytes;
    const dev_t volume = volumeOf(folder);
    for (const DownloadTask &task : m_tasks) {
        const qint64 needed = task.expected - task.received;
        if (!task.canPause() || needed <= 0 || volumeOf(folderOf(task)) != volume)
            continue;
        if (needed > left)
            return false;
        left -= needed;
    }
    return size <= left;
}

/// Starts as many of those that wait as may run.
void DownloadManager::schedule()
{
    for (DownloadTask &task : m_tasks) {
        if (task.isWaiting() && !m_runs[task.id].transfer && running() < m_options.mostAtOnce)
            launch(task);
    }
    const bool isAlone = running() == 1;
    for (const auto &[id, run] : m_runs) {
        if (run.transfer)
            run.transfer->allowTwo(isAlone);
    }
    changed();
}

qsizetype DownloadManager::running() const
{
    return std::ranges::count_if(m_runs,
                                 [](const auto &each) { return each.second.transfer != nullptr; });
}

void DownloadManager::launch(DownloadTask &task)
{
    if (const QString reason = refusal(task.dest); !reason.isEmpty()) {
        task.state = DownloadTask::Failed{reason};
        return;
    }
    const QUuid id = task.id;
    Run &run = m_runs[id];
    run.transfer = std::make_unique<Transfer>(
        m_fetch, TransferRequest{task.url, task.dest, nameOf(id), run.part, run.checksum},
        m_options.transfer);
    connect(run.transfer.get(), &Transfer::progressed, this,
            [this, id](const TransferProgress &progress) { progressed(id, progress); });
    connect(run.transfer.get(), &Transfer::ended, this,
            [this, id](const TransferEnd &end) { ended(id, end); });
    run.part.sealed = false;
    run.receivedBefore = task.received;
    run.meter.restart();
    task.state = DownloadTask::Downloading{};
}

void DownloadManager::pause(const QUuid &id)
{
    if (DownloadTask *task = find(id); task && (task->canPause() || task->isChecking()))
        stop(id, DownloadTask::Paused{});
}

/// One that runs is only told to stop: it is in the other state when it has.
void DownloadManager::stop(const QUuid &id, const DownloadTask::State &next)
{
    Run &run = m_runs[id];
    run.next = next;
    if (run.transfer) {
        run.transfer->stop();
    } else {
        find(id)->state = next;
        changed();
    }
}

void DownloadManager::resume(const QUuid &id)
{
    DownloadTask *task = find(id);
    if (!task)
        return;
    Run &run = m_runs[id];
    run.tries = 0;
    run.next = DownloadTask::Waiting{};
    if (run.transfer)
        return; // it runs, or goes on as soon as it has stopped
    if (task->isFinished()) {
        run.part = {};
        task->received = 0;
        task->startedOver = false;
        QFile::remove(PartMarks::pathOf(nameOf(id)));
    }
    task->state = DownloadTask::Waiting{};
    schedule();
}

void DownloadManager::cancel(const QUuid &id)
{
    if (!find(id))
        return;
    forget(id);
    schedule();
}

void DownloadManager::clearFinished()
{
    const QList<DownloadTask> before = m_tasks;
    for (const DownloadTask &task : before) {
        if (!task.isUnderway())
            forget(task.id);
    }
    changed();
}

/// With what there is of it on the disk, but a finished file.
void DownloadManager::forget(const QUuid &id)
{
    const QString name = nameOf(id);
    const auto remove = [part = PartFile::pathIn(folderOf(*find(id)), name), name] {
        runOnPool([=] { removeParts(part, name); });
    };
    auto node = m_runs.extract(id);
    if (auto &transfer = node.mapped().transfer) {
        transfer->disconnect(this);
        const auto over = [this, remove, which = transfer.get()] {
            std::erase_if(m_leaving, [&](const auto &each) { return each.get() == which; });
            remove(); // it may have been over before it heard of this
        };
        connect(transfer.get(), &Transfer::ended, this, over, Qt::QueuedConnection);
        transfer->discard();
        m_leaving.push_back(std::move(transfer));
    } else {
        remove();
    }
    m_tasks.removeIf([&](const DownloadTask &task) { return task.id == id; });
}

void DownloadManager::move(const QUuid &id, int place)
{
    const auto task = std::ranges::find(m_tasks, id, &DownloadTask::id);
    if (task == m_tasks.end())
        return;
    m_tasks.move(task - m_tasks.begin(), std::clamp<qsizetype>(place, 0, m_tasks.size() - 1));
    changed();
}

void DownloadManager::progressed(const QUuid &id, const TransferProgress &progress)
{
    DownloadTask &task = *find(id);
    Run &run = m_runs[id];
    const bool isNewOnDisk = run.part != progress.onDisk;
    run.part = progress.onDisk;
    run.meter.take(progress.received);
    task.received = progress.received;
    task.startedOver = task.startedOver || progress.startedOver;
    task.speed = run.meter.speed();
    const qint64 known = task.expected;
    if (progress.total > 0)
        task.expected = progress.total;
    task.secondsLeft =
        task.expected > 0 ? run.meter.secondsFor(task.expected - task.received) : std::nullopt;
    if (progress.isChecking)
        task.state = DownloadTask::Checking{};
    if (task.expected > known && !hasRoom(folderOf(task), 0))
        stop(id, DownloadTask::Held{
                     tr("Not enough free disk space for %1.").arg(Fmt::byteCount(task.expected))});
    if (isNewOnDisk)
        m_file.save();
    Q_EMIT tasksChanged();
}

void DownloadManager::ended(const QUuid &id, const TransferEnd &end)
{
    DownloadTask &task = *find(id);
    Run &run = m_runs[id];
    run.transfer.release()->deleteLater(); // which has told of this
    run.part = end.part;
    task.speed = 0;
    task.secondsLeft.reset();
    task.state = stateAfter(task, end);
    if (end.result == TransferResult::Saved) {
        task.received = task.expected;
        refreshSaved();
    } else {
        task.received = end.part.done.bytes();
    }
    schedule();
}

DownloadTask::State DownloadManager::stateAfter(const DownloadTask &task, const TransferEnd &end)
{
    Run &run = m_runs[task.id];
    switch (end.result) {
    case TransferResult::Saved:
        return DownloadTask::Finished{end.isChecked};
    case TransferResult::Stopped:
        return run.next;
    case TransferResult::AskedToWait:
        return retryAfter(run, end.text, end.pause);
    case TransferResult::NoSpace:
        return DownloadTask::Held{tr("%1 Make room, then try again.").arg(end.text)};
    case TransferResult::Damaged:
    case TransferResult::Failed:
        return DownloadTask::Failed{end.text};
    case TransferResult::Broken:
        break;
    }
    if (end.part.done.bytes() - run.receivedBefore >= worthwhileBytes)
        run.tries = 0;
    if (++run.tries > m_options.mostTries)
        return DownloadTask::Failed{end.text};
    return retryAfter(run, end.text,
                      std::max(end.pause, m_options.firstPause * (1 << (run.tries - 1))));
}

DownloadTask::State DownloadManager::retryAfter(Run &run, const QString &reason,
                                                std::chrono::milliseconds pause)
{
    run.nextTry = Clock::now() + pause;
    m_clock.start(0);
    return DownloadTask::Retrying{reason, secondsUntil(run.nextTry)};
}

/// Once a second, or when the next one tries again.
void DownloadManager::countDown()
{
    using namespace std::chrono;
    bool isTime = false;
    for (DownloadTask &task : m_tasks) {
        auto *retrying = std::get_if<DownloadTask::Retrying>(&task.state);
        if (!retrying)
            continue;
        const auto left = ceil<milliseconds>(m_runs[task.id].nextTry - Clock::now());
        if (left <= milliseconds(0)) {
            task.state = DownloadTask::Waiting{};
            isTime = true;
            continue;
        }
        retrying->secondsLeft = secondsUntil(m_runs[task.id].nextTry);
        const auto wait = std::min(left, milliseconds(1000));
        if (!m_clock.isActive() || m_clock.remainingTimeAsDuration() > wait)
            m_clock.start(wait);
    }
    if (isTime)
        schedule();
    else
        Q_EMIT tasksChanged();
}

void DownloadManager::changed()
{
    m_file.save();
    m_file.hurry();
    Q_EMIT tasksChanged();
}

DownloadTask *DownloadManager::find(const QUuid &id)
{
    const auto task = std::ranges::find(m_tasks, id, &DownloadTask::id);
    return task == m_tasks.end() ? nullptr : &*task;
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

} // namespace tavelo
