// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "ResidentMemory.h"
#include "WindowProbe.h"
#include "main/Application.h"
#include "platform/http/ServiceHosts.h"

#include <QProcess>
#include <QQuickWindow>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

// From the start of the process to its window and to the first painted Home, and the memory it then
// has, beside mpv's own idle window on the same display in the same run.
//   xvfb-run -a -s "-screen 0 1600x1000x24" build/release/bin/bench_launch

using namespace tavelo;

namespace {

constexpr int rounds = 9;
constexpr unsigned long settling = 8000; // milliseconds before memory is read

qint64 now() // milliseconds, the same clock in every process
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// The program on services that the parent runs; writes the time of its first filled Home.
int runChild(int &argc, char **argv)
{
    ServiceHosts::replace({.archive = QString::fromLatin1(argv[2])});
    Application application(argc, argv);
    if (!application.show())
        return 1;
    bool told = false;
    QObject::connect(application.window(), &QQuickWindow::frameSwapped, application.window(), [&] {
        const AppState &state = application.state();
        if (told || state.featured().isEmpty() || state.popular().isEmpty())
            return;
        told = true;
        std::printf("%lld\n", static_cast<long long>(now()));
        std::fflush(stdout);
    });
    return application.run();
}

struct Launch
{
    qint64 window = 0; // milliseconds from the start
    qint64 home = 0;   // 0: none
    double memory = 0; // MB, proportional set size
};

Launch launch(const WindowProbe &probe, const QString &program, const QStringList &arguments,
              bool tellsHome, bool readsMemory)
{
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    Launch result;
    const qint64 start = now();
    process.start(program, arguments);
    while (probe.shownWindows() == 0 && now() - start < 10'000)
        QThread::msleep(1);
    result.window = now() - start;
    if (tellsHome && process.waitForReadyRead(10'000))
        result.home = process.readLine().trimmed().toLongLong() - start;
    if (readsMemory) {
        QThread::msleep(settling);
        result.memory = proportionalSetSize(QString::number(process.processId()));
    }
    process.kill();
    process.waitForFinished();
    while (probe.shownWindows() != 0)
        QThread::msleep(1);
    return result;
}

qint64 median(QList<Launch> launches, qint64 Launch::*field)
{
    std::ranges::sort(launches, {}, field);
    return launches[launches.size() / 2].*field;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "child") == 0)
        return runChild(argc, argv);

    const QCoreApplication application(argc, argv);
    DemoServer services(QCoreApplication::applicationDirPath() + QLatin1String("/../demo-films"));
    const WindowProbe probe;
    const QString self = QCoreApplication::applicationFilePath();
    const QStringList asChild{QStringLiteral("child"), services.baseUrl()};
    const QStringList idle{QStringLiteral("--no-config"), QStringLiteral("--idle"),
                           QStringLiteral("--force-window=immediate"), QStringLiteral("--ao=null")};
    QList<Launch> ours;
    QList<Launch> peer;
    for (int round = 0; round < rounds; ++round) {
        const bool last = round == rounds - 1;
        ours.append(launch(probe, self, asChild, true, last));
        peer.append(launch(probe, QStringLiteral("mpv"), idle, false, last));
    }
    const auto print = [](const char *what, double our, double its, const char *unit) {
        std::printf("%-24s %7.0f %s   mpv %7.0f %s   ratio %.2f\n", what, our, unit, its, unit,
                    our / its);
    };
    const double peerWindow = static_cast<double>(median(peer, &Launch::window));
    print("window on screen", static_cast<double>(median(ours, &Launch::window)), peerWindow, "ms");
    print("first painted Home", static_cast<double>(median(ours, &Launch::home)), peerWindow, "ms");
    print("memory after 8 s", ours.last().memory, peer.last().memory, "MB");
    return 0;
}
