// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Seconds.h"
#include "platform/FolderWalk.h"
#include "platform/StandardFolders.h"
#include "storage/LibraryStore.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

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

// One progress report: the whole of a full history, on disk.
void saveHistory(benchmark::State &state)
{
    home();
    LibraryStore store;
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
    const QString key = store.history().at(0).key;
    double position = 0;
    for ([[maybe_unused]] auto turn : state)
        store.updateProgress(key, ++position, 5400);
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
        const double seconds = secondsOf([&] { return FolderWalk::directorySize(folder); });
        state.SetIterationTime(seconds);
        ours += seconds;
    }
    state.counters["du_ms"] = theirs / double(state.iterations()) * 1e3;
    state.counters["ratio"] = ours / theirs; // the aim is 1.2
}

} // namespace

BENCHMARK(saveHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(directorySize)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);
