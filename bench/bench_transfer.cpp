// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpServiceThread.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/CurlFetch.h"
#include "transfers/Transfer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>

// One gibibyte over 127.0.0.1 into a file, turn by turn with curl on the same server and folder. By
// default in memory: curl leaves the disk's synchronisation to others, and it takes longest.
//   build/release/bin/bench_transfer [FOLDER]

using namespace tavelo;

namespace {

constexpr qint64 bodyBytes = 1024LL * 1024 * 1024;
constexpr int rounds = 6;

struct Figures
{
    QList<double> speeds = {}; // MB/s
    QList<double> stalls = {}; // of the main thread, milliseconds
};

/// Kilobytes, by the name that the system gives them in /proc/self/status.
qint64 memory(const char *name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.simplified().split(' ').value(1).toLongLong();
    }
    return 0;
}

void forgetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

/// Runs `loop` until it is quit; returns the longest time in milliseconds that a timer of 1 ms had
/// to wait.
double longestStall(QEventLoop &loop)
{
    QElapsedTimer since;
    double longest = 0;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    QObject::connect(&tick, &QTimer::timeout, &tick, [&] {
        longest = std::max(longest, static_cast<double>(since.nsecsElapsed()) / 1e6);
        since.start();
    });
    tick.start(1);
    since.start();
    loop.exec();
    return longest;
}

double median(QList<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

enum class Loader { Ours, OursChecked, Curl };

const QByteArray &block()
{
    static const QByteArray bytes(1024 * 1024, 'f');
    return bytes;
}

/// Costs nothing to make.
HttpAnswer::Source source()
{
    return {bodyBytes, [](qint64, qint64 count) {
                return count <= block().size() ? QByteArray::fromRawData(block().constData(), count)
                                               : QByteArray(count, 'f');
            }};
}

QByteArray hashOfBody()
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (qint64 done = 0; done < bodyBytes; done += block().size())
        hash.addData(block());
    return hash.result();
}

Checksum checksum()
{
    static const Checksum made{QCryptographicHash::Md5, hashOfBody()};
    return made;
}

double hashSpeed()
{
    QElapsedTimer timer;
    timer.start();
    (void)hashOfBody();
    return static_cast<double>(bodyBytes) * 1e3 / static_cast<double>(timer.nsecsElapsed());
}

bool tookWhole(const QString &file)
{
    return QFileInfo(file).size() == bodyBytes && QFile::remove(file);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder(application.arguments().value(1, QStringLiteral("/dev/shm")) +
                               QStringLiteral("/bench_transfer-XXXXXX"));
    StandardFolders::relocate(folder.path());
    const QString target = folder.filePath(QStringLiteral("film.mp4"));
    HttpServiceThread server;
    HttpService &service = server.add();
    server.run([&] {
        service.serve("/film.mp4", {.etag = "\"film\"", .ranges = true, .source = source()});
    });
    const QUrl url = service.url("/film.mp4");
    CurlFetch fetch;
    QEventLoop loop;
    const auto load = [&](Loader loader, Figures &figures) {
        QElapsedTimer timer;
        QProcess curl;
        std::unique_ptr<Transfer> transfer;
        bool isWhole = true;
        timer.start();
        if (loader == Loader::Curl) {
            QObject::connect(&curl, &QProcess::finished, &loop, &QEventLoop::quit);
            curl.start(QStringLiteral("curl"), {QStringLiteral("-so"), target, url.toString()});
        } else {
            const Checksum known = loader == Loader::OursChecked ? checksum() : Checksum();
            transfer = std::make_unique<Transfer>(
                fetch, TransferRequest{url, target, QStringLiteral("bench"), {}, known});
            transfer->allowTwo(true);
            QObject::connect(transfer.get(), &Transfer::ended, &loop, [&](const TransferEnd &end) {
                isWhole = end.result == TransferResult::Saved && end.isChecked == known.isKnown();
                loop.quit();
            });
        }
        figures.stalls.append(longestStall(loop));
        figures.speeds.append(static_cast<double>(bodyBytes) * 1e3 /
                              static_cast<double>(timer.nsecsElapsed()));
        return isWhole && tookWhole(target);
    };
    (void)checksum(); // made before anything is measured
    const qint64 before = memory("VmRSS:");
    forgetPeak();
    Figures figures[3];
    for (int round = 0; round < rounds; ++round) {
        // Each is first as often as the others: the disk still writes what the one before left.
        for (int turn = 0; turn < 3; ++turn) {
            const int loader = (round + turn) % 3;
            if (!load(Loader(loader), figures[loader]))
                return std::puts("It did not come whole."), 1;
        }
    }
    const auto &[ours, checked, curls] = figures;
    std::printf("1 GiB to a file, medians of %d\n", rounds);
    std::printf("  curl               %6.0f MB/s\n", median(curls.speeds));
    std::printf("  ours               %6.0f MB/s   ratio %.2f\n", median(ours.speeds),
                median(ours.speeds) / median(curls.speeds));
    std::printf("  ours, checked      %6.0f MB/s   ratio %.2f\n", median(checked.speeds),
                median(checked.speeds) / median(curls.speeds));
    std::printf("  MD5 alone          %6.0f MB/s\n", hashSpeed());
    std::printf("peak memory growth   %6.1f MiB\n",
                static_cast<double>(memory("VmHWM:") - before) / 1024);
    std::printf("main thread's longest stall %.1f ms, median %.1f (while curl loads: %.1f, %.1f)\n",
                std::ranges::max(ours.stalls), median(ours.stalls), std::ranges::max(curls.stalls),
                median(curls.stalls));
    return 0;
}
