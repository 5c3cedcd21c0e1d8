// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoApplication.h"
#include "platform/media/MediaEngine.h"
#include "ui/PlayerSurface.h"

#include <QElapsedTimer>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <cstdio>

// From Play to the film's first picture on screen, over HTTP on 127.0.0.1 with 80 ms before every
// answer: in the program, beside the engine alone in a bare window, in one run.
//   xvfb-run -a -s "-screen 0 1600x1000x24" build/release/bin/bench_play

using namespace tavelo;

namespace {

constexpr int rounds = 7;
constexpr int latency = 80; // milliseconds

bool showsPicture(QQuickWindow &window)
{
    const QImage picture = window.grabWindow();
    int lit = 0;
    for (int i = 1; i < 8; ++i)
        lit += qGray(picture.pixel(picture.width() * (4 + i) / 13, picture.height() / 2)) > 20;
    return lit > 3;
}

/// Milliseconds from `start` until the window shows the film and it runs; -1 when it does not come.
qint64 untilPicture(QQuickWindow &window, const VideoPlayerManager &player,
                    const std::function<void()> &start)
{
    QElapsedTimer timer;
    timer.start();
    start();
    return QTest::qWaitFor(
               [&] { return player.isPlaying() && !player.isBuffering() && showsPicture(window); },
               10'000)
               ? timer.elapsed()
               : -1;
}

qint64 median(QList<qint64> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    DemoApplication demo(argc, argv);
    demo.useServices();
    if (!demo.show())
        return 1;
    AppState &state = demo.application().state();
    if (!QTest::qWaitFor([&] { return !state.popular().isEmpty(); }, 10'000))
        return 1;
    const MediaItem item = state.popular().first();
    const ArchiveFile file{QStringLiteral("dusk_over_kestrel_ridge.mp4"),
                           {},
                           {},
                           {},
                           demo.services().baseUrl() +
                               QStringLiteral("/download/dusk_over_kestrel_ridge/")};
    demo.services().setFaults({.below = "/download/", .latency = latency});

    QQuickWindow bare;
    bare.setColor(Qt::black);
    bare.resize(demo.application().window()->size());
    bare.show();
    VideoPlayerManager manager([] { return MediaEngine::create(); });
    PlayerSurface surface(bare.contentItem());
    surface.setSize(bare.size());
    surface.setPlayer(&manager);

    // First of all the program with nothing loaded, as at the first Play after its start.
    state.selectItem(item);
    QTest::qWait(1000); // the item sheet is read
    QQuickWindow &window = *demo.application().window();
    const qint64 first =
        untilPicture(window, *state.playback()->player(), [&] { state.play(file, item, {}); });
    state.playback()->stopPlayback();

    QList<qint64> ours;
    QList<qint64> engine;
    for (int round = 0; round <= rounds; ++round) {
        const qint64 alone = untilPicture(bare, manager, [&] { manager.load(file.url(), 0); });
        manager.stop();
        QTest::qWait(300);
        const qint64 inProgram =
            untilPicture(window, *state.playback()->player(), [&] { state.play(file, item, {}); });
        state.playback()->stopPlayback();
        state.setShowPlayer(false);
        QTest::qWait(300);
        if (round > 0) { // the bare engine's first round starts it
            ours.append(inProgram);
            engine.append(alone);
        }
    }
    std::printf("first Play after the start %5lld ms\n", static_cast<long long>(first));
    std::printf(
        "Play to picture            %5lld ms   engine alone %5lld ms   difference %lld ms\n",
        static_cast<long long>(median(ours)), static_cast<long long>(median(engine)),
        static_cast<long long>(median(ours) - median(engine)));
    return 0;
}
