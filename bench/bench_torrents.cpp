// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoApplication.h"
#include "ManyResults.h"
#include "ui/TorrentInspectorModel.h"

#include <QElapsedTimer>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>

// Ten thousand search results in the program's window: from a change of order or filter to the
// painted frame, beside a frame that shows nothing new: that one is the display's own time, which
// is long where there is no graphics hardware.
//   xvfb-run -a -s "-screen 0 1600x1000x24" build/release/bin/bench_torrents

using namespace tavelo;

namespace {

constexpr int fileCount = 50'000;
constexpr int rounds = 31;
constexpr double frame = 16.7; // milliseconds

/// Milliseconds from `change` to the end of the frame that shows it; the median and the longest.
double measure(QQuickWindow &window, const char *what, const std::function<void(int)> &change)
{
    QList<double> times;
    for (int round = 0; round < rounds; ++round) {
        QTest::qWait(40); // nothing is left to paint
        QElapsedTimer timer;
        bool painted = false;
        double time = 0;
        const auto connection = QObject::connect(
            &window, &QQuickWindow::frameSwapped, &window,
            [&] {
                time = static_cast<double>(timer.nsecsElapsed()) / 1e6;
                painted = true;
            },
            Qt::DirectConnection);
        timer.start();
        change(round);
        (void)QTest::qWaitFor([&] { return painted; });
        QObject::disconnect(connection);
        times.append(time);
    }
    std::ranges::sort(times);
    const double median = times[times.size() / 2];
    std::printf("%-34s %6.2f ms   longest %6.2f ms   of a frame %.2f\n", what, median, times.last(),
                median / frame);
    return median;
}

void measureModel(const char *what, TorrentResultModel &model)
{
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < rounds; ++round)
        model.sortBy(TorrentSort::Title);
    std::printf("%-34s %6.2f ms\n", what, static_cast<double>(timer.nsecsElapsed()) / 1e6 / rounds);
}

void measureInspector()
{
    TorrentInfo info;
    for (int i = 0; i < fileCount; ++i)
        info.files.append({QStringLiteral("Reels/Part %1/reel.%1.srt").arg(i), 1'000});
    TorrentInspectorModel model;
    QElapsedTimer timer;
    timer.start();
    model.setInfo(QVariant::fromValue(info));
    std::printf("%-34s %6.2f ms\n", "inspector's model of 50,000 files",
                static_cast<double>(timer.nsecsElapsed()) / 1e6);
}

} // namespace

int main(int argc, char **argv)
{
    DemoApplication demo(argc, argv);
    demo.useServices();
    if (!demo.show())
        return 1;
    QQuickWindow &window = *demo.application().window();
    window.resize(1440, 900);
    AppState &state = demo.application().state();
    state.setSectionName(QStringLiteral("Torrent Search"));
    searchForMany(*state.aggregator());
    TorrentResultModel *model = nullptr;
    const auto isFilled = [&] {
        model = resultsIn(window.contentItem());
        return model && model->count() == resultCount;
    };
    if (!QTest::qWaitFor(isFilled, 10'000))
        return 1;
    QTest::qWait(1'000);

    TorrentResultModel unseen;
    unseen.setRows(TorrentRows::of(state.aggregator()->results()));
    measureModel("filter and sort", unseen);
    measureModel("filter and sort, with its view", *model);
    measureInspector();
    const double idle = measure(window, "a frame with nothing new", [&](int) { window.update(); });
    const auto beyond = [idle](double time) {
        std::printf("%-34s %6.2f ms   of a frame %.2f\n", "  beyond one with nothing new",
                    time - idle, (time - idle) / frame);
    };
    beyond(measure(window, "sort by title", [&](int) { model->sortBy(TorrentSort::Title); }));
    beyond(measure(window, "sort by size", [&](int) { model->sortBy(TorrentSort::Size); }));
    beyond(measure(window, "filter", [&](int round) {
        model->setResolution(round % 2 ? TorrentFilter::any() : QStringLiteral("1080p"));
    }));
    return 0;
}
