// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpServiceThread.h"
#include "platform/TransferSession.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

// One gibibyte over 127.0.0.1 into a file, turn by turn with curl on the same server and folder.
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

/// Moves finished files to the path in their descriptions.
class Client : public TransferDelegate
{
public:
    std::function<void()> ended; // called on the session's thread
    std::optional<Error> error;  // of the last transfer

    void dataWritten(const TransferInfo &, qint64, qint64) override {}
    void finished(const TransferInfo &info, const QString &file) override
    {
        QFile::rename(file, info.description);
    }
    void completed(const TransferInfo &, const std::optional<Error> &how) override
    {
        error = how;
        ended();
    }
    void paused(const TransferInfo &, const QByteArray &) override {}
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

bool tookWhole(const QString &file)
{
    return QFileInfo(file).size() == bodyBytes && QFile::remove(file);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder(application.arguments().value(1, QDir::tempPath()) +
                               QStringLiteral("/bench_transfer-XXXXXX"));
    const QString target = folder.filePath(QStringLiteral("film.mp4"));
    HttpServiceThread server;
    HttpService &service = server.add();
    server.run([&] {
        service.serve("/film.mp4",
                      {.ranges = true, .source = HttpAnswer::Source::pattern(bodyBytes)});
    });
    const QUrl url = service.url("/film.mp4");
    QEventLoop loop;
    Client client;
    client.ended = [&loop] {
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    };
    const qint64 before = memory("VmRSS:");
    forgetPeak();
    TransferSession session(client);
    QProcess curl;
    QObject::connect(&curl, &QProcess::finished, &loop, &QEventLoop::quit);
    const auto startCurl = [&] {
        curl.start(QStringLiteral("curl"), {QStringLiteral("-so"), target, url.toString()});
    };
    const auto startOurs = [&] { session.start({url, folder.path(), target}); };
    Figures ours;
    Figures curls;
    for (int round = 0; round < rounds; ++round) {
        // Each is first as often as second: the disk still writes what the one before left.
        for (const bool own : {round % 2 == 0, round % 2 != 0}) {
            QElapsedTimer timer;
            timer.start();
            own ? startOurs() : startCurl();
            Figures &figures = own ? ours : curls;
            figures.stalls.append(longestStall(loop));
            figures.speeds.append(static_cast<double>(bodyBytes) * 1e3 /
                                  static_cast<double>(timer.nsecsElapsed()));
            if (client.error || !tookWhole(target))
                return std::puts(own ? "the session did not get it" : "curl did not get it"), 1;
        }
    }
    const double ratio = median(ours.speeds) / median(curls.speeds);
    std::printf("1 GiB to a file      %6.0f MB/s   curl %6.0f MB/s   ratio %.2f (medians of %d)\n",
                median(ours.speeds), median(curls.speeds), ratio, rounds);
    std::printf("peak memory growth   %6.1f MiB\n",
                static_cast<double>(memory("VmHWM:") - before) / 1024);
    std::printf("main thread's longest stall %.1f ms, median %.1f (while curl loads: %.1f, %.1f)\n",
                std::ranges::max(ours.stalls), median(ours.stalls), std::ranges::max(curls.stalls),
                median(curls.stalls));
    return 0;
}
