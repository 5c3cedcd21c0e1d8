// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "platform/files/FolderWalk.h"
#include "platform/files/StandardFolders.h"
#include "storage/CacheManager.h"
#include "storage/CacheTag.h"
#include "storage/LibraryStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavelo;

namespace {

const QString &home()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        StandardFolders::relocate(folder.path());
        return folder.path();
    }();
    return path;
}

// What the same bytes cost without us: written, synchronised, put in place.
double bareSeconds(const QByteArray &content)
{
    const QByteArray path = QFile::encodeName(home() + QStringLiteral("/bare"));
    const QByteArray part = path + ".part";
    return secondsOf([&] {
        const int file = ::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        const bool written = ::write(file, content.constData(), size_t(content.size())) > 0 &&
                             ::fdatasync(file) == 0;
        ::close(file);
        return written && ::rename(part.constData(), path.constData()) == 0;
    });
}

void fill(LibraryStore &store)
{
    for (int i = 0; i < int(LibraryStore::maxEntries); ++i) {
        HistoryEntry entry;
        entry.key = QStringLiteral("the-lighthouse-keepers-%1/reel 1.mp4").arg(i);
        entry.itemID = QStringLiteral("the-lighthouse-keepers-%1").arg(i);
        entry.title = QStringLiteral("The Lighthouse Keepers, part %1").arg(i);
        entry.source = QStringLiteral("https://example.org/download/") + entry.key;
        entry.thumbnail = QStringLiteral("https://example.org/services/img/") + entry.itemID;
        entry.lastPlayed = QDateTime::currentDateTimeUtc();
        store.record(entry);
    }
}

// One progress report, until the whole of a full history is on disk, and the part of it that the
// main thread spends. Turn by turn with the bare file.
void saveHistory(benchmark::State &state)
{
    int argc = 1;
    char name[] = "bench_storage";
    char *argv[] = {name, nullptr};
    home();
    const QCoreApplication application(argc, argv);
    LibraryStore store;
    fill(store);
    const QString key = store.history().at(0).key;
    double position = 0;
    const QByteArray content = toJson(store.history());
    double bare = 0;
    double main = 0;
    for ([[maybe_unused]] auto turn : state) {
        store.file().flush();
        bare += bareSeconds(content);
        const double reported = secondsOf([&] {
            store.updateProgress(key, ++position, 5400);
            return 0;
        });
        main += reported;
        state.SetIterationTime(reported + secondsOf([&] {
                                   store.file().flush();
                                   return 0;
                               }));
    }
    state.counters["bare_file_ms"] = bare / double(state.iterations()) * 1e3;
    state.counters["main_thread_ms"] = main / double(state.iterations()) * 1e3;
    state.counters["limit_ms"] = 2;
}

QString folderOf(int count)
{
    const QString folder = home() + QStringLiteral("/walk");
    for (int i = 0; i < count; ++i) {
        const QString below = folder + QStringLiteral("/%1").arg(i / 500);
        if (i % 500 == 0)
            QDir().mkpath(below);
        QFile file(below + QStringLiteral("/%1.jpg").arg(i));
        if (file.open(QIODevice::WriteOnly))
            file.write("a poster");
    }
    return folder;
}

// Turn by turn with `du -s`, whose start is part of its time.
void directorySize(benchmark::State &state)
{
    const QString folder = folderOf(int(state.range(0)));
    double ours = 0;
    double theirs = 0;
    for ([[maybe_unused]] auto turn : state) {
        theirs += secondsOf([&] {
            return QProcess::execute(
                QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("du -s \"$0\" >/dev/null"), folder});
        });
        const double seconds =
            secondsOf([&] { return FolderWalk::directorySize(OpenFolder(folder)); });
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    state.counters["du_ms"] = theirs / double(state.iterations()) * 1e3;
    state.counters["ratio"] = ours / theirs; // the aim is 1.2
}

// The longest time between two turns of an event loop that a timer wakes each millisecond, in
// seconds.
double longestStall(const std::function<bool()> &isRunning)
{
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    beat.start(1);
    QElapsedTimer clock;
    clock.start();
    qint64 last = clock.nsecsElapsed();
    qint64 longest = 0;
    while (isRunning()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const qint64 now = clock.nsecsElapsed();
        longest = qMax(longest, now - last);
        last = now;
    }
    return double(longest) / 1e9;
}

ino_t inodeOf(const QString &path)
{
    struct stat facts = {};
    ::stat(QFile::encodeName(path).constData(), &facts);
    return facts.st_ino;
}

// Thirty jumps through a film with a held key, seen from the main thread; beside the same loop for
// the same time with nothing to do.
void holdArrowKey(benchmark::State &state)
{
    int argc = 1;
    char name[] = "bench_storage";
    char *argv[] = {name, nullptr};
    home();
    QCoreApplication application(argc, argv);
    LibraryStore store;
    fill(store);
    const QString key = store.history().at(0).key;
    const QString file = SettingsStore::appSupport() + QStringLiteral("/history.json");
    double stall = 0;
    double idle = 0;
    int writes = 0;
    for ([[maybe_unused]] auto turn : state) {
        int presses = 0;
        ino_t last = inodeOf(file);
        QTimer keyRepeat;
        QObject::connect(&keyRepeat, &QTimer::timeout, &keyRepeat, [&] {
            if (std::exchange(last, inodeOf(file)) != last)
                ++writes;
            store.updateProgress(key, ++presses * 10, 5400);
        });
        keyRepeat.start(33);
        QElapsedTimer clock;
        clock.start();
        stall = longestStall([&] { return presses < 30; });
        keyRepeat.stop();
        const qint64 took = clock.restart();
        idle = longestStall([&] { return clock.elapsed() < took; });
        state.SetIterationTime(double(took) / 1e3);
    }
    state.counters["writes"] = writes;
    state.counters["stall_ms"] = stall * 1e3;
    state.counters["idle_stall_ms"] = idle * 1e3;
    state.counters["limit_ms"] = 8;
}

// A clean-up that removes half of the files, seen from the main thread; beside the same loop for
// the same time with nothing to do.
void cleanCache(benchmark::State &state)
{
    int argc = 1;
    char name[] = "bench_storage";
    char *argv[] = {name, nullptr};
    QCoreApplication application(argc, argv);
    double stall = 0;
    double idle = 0;
    for ([[maybe_unused]] auto turn : state) {
        SettingsStore settings;
        settings.setCachePath(folderOf(int(state.range(0))));
        const OpenFolder folder(settings.cachePath());
        CacheTag::put(folder);
        settings.setAutoCleanDays(0);
        settings.setCacheLimitMB(FolderWalk::directorySize(folder) / 2 / 1'048'576);
        QElapsedTimer clock;
        clock.start();
        CacheManager cache(settings);
        int measured = 0; // at the start, and after the clean-up
        QObject::connect(&cache, &CacheManager::usedBytesChanged, [&] { ++measured; });
        stall = longestStall([&] { return measured < 2; });
        const qint64 took = clock.restart();
        idle = longestStall([&] { return clock.elapsed() < took; });
        state.SetIterationTime(double(took) / 1e3);
    }
    state.counters["stall_ms"] = stall * 1e3;
    state.counters["idle_stall_ms"] = idle * 1e3;
    state.counters["limit_ms"] = 8;
}

} // namespace

BENCHMARK(saveHistory)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(holdArrowKey)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(directorySize)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(cleanCache)->Arg(100'000)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
