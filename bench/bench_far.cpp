// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/Fetch.h"
#include "platform/http/ServiceHosts.h"
#include "platform/media/MediaEngine.h"
#include "platform/media/film/FilmMemory.h"
#include "platform/media/film/Films.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>

// One film in the program's engine without a window: how long until it plays, and until it plays
// from other places. bench/far runs it for every row of its table.
//   --trust FILE      authorities of the service
//   --connected       a connection to the service is open already
//   --sheet SECONDS   and the film's sheet was read for so long
//   --memory FOLDER   what is kept of films
//   --at SECONDS      where the film begins
//   --seek SECONDS    where it goes on then; any number of times

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

constexpr auto longestWait = 120s;
constexpr auto connecting = 1s;
constexpr auto settling = 300ms;       // of a new engine, before its first film
constexpr auto watched = 3s;           // between two seeks
constexpr double shouldHavePlayed = 1; // seconds of `watched`

/// Lets the program run until `done` or for as long as `most`; whether it is done.
bool runUntil(const std::function<bool()> &done, std::chrono::milliseconds most)
{
    QEventLoop loop;
    QTimer look;
    QTimer end;
    look.callOnTimeout([&] {
        if (done())
            loop.quit();
    });
    end.callOnTimeout(&loop, &QEventLoop::quit);
    look.start(1ms);
    end.start(most);
    loop.exec();
    return done();
}

void wait(std::chrono::milliseconds time)
{
    runUntil([] { return false; }, time);
}

[[noreturn]] void giveUp(const char *what, const MediaPlayer &player)
{
    std::printf("failed %s %s\n", what, qPrintable(player.itemError()));
    std::fflush(stdout);
    std::_Exit(1);
}

void tell(const char *what, const QElapsedTimer &timer)
{
    std::printf("%s %.1f\n", what, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    std::fflush(stdout);
}

/// The film plays: its time runs on.
void watch(const MediaPlayer &player)
{
    const double from = player.currentTime();
    wait(watched);
    if (player.currentTime() < from + shouldHavePlayed)
        giveUp("stands still", player);
}

/// From the command to the first picture of where the film is to begin.
void start(MediaPlayer &player, const QUrl &film, double at)
{
    QElapsedTimer timer;
    bool shown = false;
    const auto ticks = QObject::connect(&player, &MediaPlayer::timeTicked, &player,
                                        [&] { shown = shown || player.hasArrived(); });
    timer.start();
    player.load(film, at);
    player.play();
    if (!runUntil([&] { return shown || !player.itemError().isEmpty(); }, longestWait) || !shown)
        giveUp("start", player);
    tell("start", timer);
    QObject::disconnect(ticks);
    watch(player);
}

/// From the command to the first picture of the place.
void seek(MediaPlayer &player, double to)
{
    QElapsedTimer timer;
    std::optional<bool> arrived;
    timer.start();
    player.seek(to, [&](bool finished) { arrived = finished; });
    if (!runUntil([&] { return arrived.has_value(); }, longestWait) || !*arrived)
        giveUp("seek", player);
    tell("seek", timer);
    watch(player);
}

bool replaceHosts(const QUrl &film, const QString &certificates)
{
    ServiceHosts hosts;
    QFile file(certificates);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    hosts.certificates = file.readAll();
    hosts.archive = film.adjusted(QUrl::RemovePath | QUrl::RemoveQuery).toString();
    ServiceHosts::replace(hosts);
    return true;
}

/// What the program has done by the time that Play is pressed.
void goAhead(const QCommandLineParser &line, const QUrl &film)
{
    if (line.isSet(QStringLiteral("memory")))
        FilmMemory::shared().setFolder(line.value(QStringLiteral("memory")));
    const double sheet = line.value(QStringLiteral("sheet")).toDouble();
    if (sheet > 0 || line.isSet(QStringLiteral("connected"))) {
        Fetch::shared().connectAhead(QUrl(ServiceHosts::current().archive));
        wait(connecting);
    }
    if (sheet > 0) {
        Films::shared().prepare({.url = film});
        wait(std::chrono::milliseconds(static_cast<qint64>(sheet * 1000)));
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser line;
    line.addOption({QStringLiteral("trust"), {}, QStringLiteral("FILE")});
    line.addOption(QCommandLineOption(QStringLiteral("connected")));
    line.addOption({QStringLiteral("sheet"), {}, QStringLiteral("SECONDS")});
    line.addOption({QStringLiteral("memory"), {}, QStringLiteral("FOLDER")});
    line.addOption({QStringLiteral("at"), {}, QStringLiteral("SECONDS"), QStringLiteral("0")});
    line.addOption({QStringLiteral("seek"), {}, QStringLiteral("SECONDS")});
    line.addPositionalArgument(QStringLiteral("URL"), {});
    line.process(application);

    const QUrl film(line.positionalArguments().value(0));
    if (!replaceHosts(film, line.value(QStringLiteral("trust"))))
        return std::puts("failed no certificates"), 1;
    const auto player = MediaEngine::create({.headless = true});
    if (!player)
        return std::puts("failed no engine"), 1;
    wait(settling);
    goAhead(line, film);
    start(*player, film, line.value(QStringLiteral("at")).toDouble());
    for (const QString &seconds : line.values(QStringLiteral("seek")))
        seek(*player, seconds.toDouble());
    std::printf("at %.3f\n", player->currentTime());
    return 0;
}
