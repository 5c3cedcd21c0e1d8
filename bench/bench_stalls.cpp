// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoApplication.h"
#include "ManyResults.h"
#include "StallWatch.h"
#include "loopback/HttpServiceThread.h"
#include "platform/http/ServiceHosts.h"

#include <QDir>
#include <QFile>
#include <QQuickWindow>

#include <algorithm>
#include <cstdio>
#include <functional>

// One walk through the whole program: every section, a film, 10,000 search results, a download of
// one gibibyte and a cache of 20,000 files that is cleaned. Prints the longest times that the main
// thread let its events wait, beside a limit of one frame, and what it was in. Frames that a
// display without graphics hardware draws slowly are waited for there too.
//   xvfb-run -a -s "-screen 0 1600x1000x24" build/release/bin/bench_stalls

using namespace tavelo;

namespace {

constexpr qint64 gibibyte = 1024LL * 1024 * 1024;
constexpr int cacheFiles = 20'000;
constexpr double limit = 16; // milliseconds
constexpr int patience = 120'000;

/// Something that the user does, and when it is over.
struct Step
{
    QString name;
    std::function<void()> act;
    std::function<bool()> isOver = [] { return true; };
    int least = 700; // milliseconds
    bool loadsLibraries = false;
};

class Walk
{
public:
    explicit Walk(DemoApplication &demo)
        : m_state(demo.application().state())
        , m_window(*demo.application().window())
    {
        m_thread.run([this] {
            m_service.serve("/film.mp4", {.source = HttpAnswer::Source::pattern(gibibyte)});
        });
        m_poll.setInterval(50);
        QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this] { look(); });
        QObject::connect(&m_keyRepeat, &QTimer::timeout, &m_keyRepeat, [this] {
            player().seekBy(m_presses % 2 == 0 ? 10 : -10);
            if (++m_presses == 30)
                m_keyRepeat.stop();
        });
        plan();
    }

    void start()
    {
        m_watch = std::make_unique<StallWatch>();
        m_poll.start();
        next();
    }

    const QList<Stall> &stalls() const { return m_watch->stalls(); }
    bool isComplete() const { return m_now == m_steps.size() && !m_late; }

private:
    void plan()
    {
        for (const char *section :
             {"Discover", "Search", "Library", "Downloads", "Settings", "Home"})
            m_steps.append({QStringLiteral("show ") + QLatin1String(section),
                            [this, section] { m_state.setSectionName(QLatin1String(section)); }});
        m_steps.append(
            {QStringLiteral("search"), [this] { m_state.searchFor(QStringLiteral("lantern")); }});
        planFilm();
        planTorrents();
        planDownload();
        planCache();
    }

    void planFilm()
    {
        const auto item = [this] { return m_state.popular().at(1); };
        m_steps.append({.name = QStringLiteral("open an item"),
                        .act = [=, this] { m_state.selectItem(item()); },
                        .least = 2'000,
                        .loadsLibraries = true});
        m_steps.append(
            {QStringLiteral("play"),
             [=, this] {
                 const QString name = item().id + QLatin1String(".mp4");
                 const QString root = ServiceHosts::current().archive +
                                      QLatin1String("/download/") + item().id + QLatin1Char('/');
                 m_state.play({name, {}, {}, {}, root}, item(), {});
             },
             [this] { return player().duration() > 0 && player().currentTime() > 1; }, 4'000});
        m_steps.append({QStringLiteral("seek"), [this] { player().seek(60); },
                        [this] { return player().currentTime() > 60; }});
        m_steps.append({QStringLiteral("thirty arrow presses"),
                        [this] {
                            m_presses = 0;
                            m_keyRepeat.start(33);
                        },
                        [this] { return m_presses == 30; }});
        m_steps.append({QStringLiteral("mini player"), [this] { m_state.setShowPlayer(false); }});
        m_steps.append({QStringLiteral("stop"), [this] { m_state.closePlayer(); }});
    }

    void planTorrents()
    {
        m_steps.append({QStringLiteral("10,000 results"),
                        [this] {
                            m_state.setSectionName(QStringLiteral("Torrent Search"));
                            searchForMany(*m_state.aggregator());
                        },
                        [this] { return results() && results()->count() == resultCount; }});
        m_steps.append(
            {QStringLiteral("sort by title"), [this] { results()->sortBy(TorrentSort::Title); }});
        m_steps.append({QStringLiteral("filter"),
                        [this] { results()->setResolution(QStringLiteral("1080p")); }});
        m_steps.append({QStringLiteral("show all again"),
                        [this] { results()->setResolution(TorrentFilter::any()); }});
    }

    void planDownload()
    {
        m_steps.append({QStringLiteral("download 1 GiB"),
                        [this] {
                            (void)m_state.downloads()->start(QStringLiteral("Large"),
                                                             m_service.url("/film.mp4"), gibibyte);
                            m_state.setSectionName(QStringLiteral("Downloads"));
                        },
                        [this] { return m_state.downloads()->tasks().constLast().isFinished(); }});
        m_steps.append(
            {QStringLiteral("clear finished"), [this] { m_state.downloads()->clearFinished(); }});
    }

    void planCache()
    {
        const QString folder = m_state.settings()->cachePath() + QLatin1String("/many");
        QDir().mkpath(folder);
        for (int i = 0; i < cacheFiles; ++i) {
            QFile file(folder + QLatin1Char('/') + QString::number(i));
            if (file.open(QIODevice::WriteOnly))
                file.write("kept");
        }
        m_steps.append({QStringLiteral("clean the cache"),
                        [this] {
                            m_state.setSectionName(QStringLiteral("Settings"));
                            m_state.cache()->clear();
                        },
                        [folder] { return !QFile::exists(folder); }});
    }

    void next()
    {
        const Step &step = m_steps.at(m_now);
        m_watch->setStep(step.name, step.loadsLibraries);
        m_since.start();
        step.act();
    }

    void look()
    {
        const Step &step = m_steps.at(m_now);
        if (m_since.elapsed() < step.least)
            return;
        if (!step.isOver() && m_since.elapsed() < patience)
            return;
        if (!step.isOver()) {
            std::fprintf(stderr, "Not over in time: %s\n", qPrintable(step.name));
            m_late = true;
        }
        if (++m_now < m_steps.size())
            return next();
        m_poll.stop();
        QCoreApplication::quit();
    }

    VideoPlayerManager &player() const { return *m_state.playback()->player(); }
    TorrentResultModel *results() const { return resultsIn(m_window.contentItem()); }

    AppState &m_state;
    QQuickWindow &m_window;
    HttpServiceThread m_thread;
    HttpService &m_service = m_thread.add();
    QList<Step> m_steps;
    qsizetype m_now = 0;
    bool m_late = false;
    QElapsedTimer m_since;
    QTimer m_poll;
    QTimer m_keyRepeat;
    int m_presses = 0;
    std::unique_ptr<StallWatch> m_watch;
};

void print(QList<Stall> stalls)
{
    std::ranges::sort(stalls, std::greater{}, &Stall::milliseconds);
    const auto over = std::ranges::count_if(
        stalls, [](const Stall &stall) { return stall.milliseconds > limit; });
    std::printf("%lld stalls of 4 ms and more, %lld over %.0f ms\n",
                static_cast<long long>(stalls.size()), static_cast<long long>(over), limit);
    for (const Stall &stall : stalls.first(std::min<qsizetype>(stalls.size(), 20)))
        std::printf("%7.1f ms  ratio %4.1f  %-18s %s\n", stall.milliseconds,
                    stall.milliseconds / limit, qPrintable(stall.step), qPrintable(stall.cause));
}

} // namespace

int main(int argc, char **argv)
{
    DemoApplication demo(argc, argv);
    demo.useServices();
    if (!demo.show())
        return 1;
    demo.application().window()->resize(1440, 900);
    Walk walk(demo);
    QTimer::singleShot(3'000, [&walk] { walk.start(); });
    demo.run();
    print(walk.stalls());
    return walk.isComplete() ? 0 : 1;
}
