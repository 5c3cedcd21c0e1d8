// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Application.h"
#include "platform/files/StandardFolders.h"
#include "platform/http/ServiceHosts.h"

#include <QDateTime>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

// The whole program from its start to Play, on a service at a distance, with no cache: prints when
// its last visible poster was there and when Play was pressed, in milliseconds since the epoch.
//   bench_far_program SERVICE CERTIFICATES TITLE      (bench/far runs it)

using namespace tavelo;

namespace {

constexpr int patience = 20'000; // milliseconds
constexpr int stillness = 500;   // of posters that are all there, until they count as such
constexpr int reading = 3000;    // of the item's sheet
constexpr int watching = 3000;   // of the film
constexpr int fewestPosters = 6;

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

bool isPoster(const QQuickItem &item)
{
    return item.inherits("QQuickImage") &&
           item.property("source").toUrl().toString().startsWith(QLatin1String("image://poster/"));
}

struct Posters
{
    int shown = 0;
    int ready = 0;
};

/// Counts the posters of which something is inside the window.
void count(const QQuickItem &item, const QRectF &window, Posters &posters)
{
    if (!item.isVisible())
        return;
    const QRectF place = item.mapRectToScene({0, 0, item.width(), item.height()});
    if (isPoster(item) && place.intersects(window)) {
        ++posters.shown;
        posters.ready += item.property("progress").toDouble() == 1 && item.implicitWidth() > 0;
    }
    for (const QQuickItem *child : item.childItems())
        count(*child, window, posters);
}

/// When the last one came; absent when not all come.
std::optional<qint64> allPosters(const Application &application)
{
    QQuickWindow &window = *application.window();
    std::optional<qint64> since;
    const auto stand = [&] {
        Posters posters;
        count(*window.contentItem(), QRectF(QPointF(), window.size()), posters);
        if (posters.shown < fewestPosters || posters.ready < posters.shown)
            since.reset();
        else if (!since)
            since = now();
        return since && now() - *since > stillness;
    };
    return QTest::qWaitFor(stand, patience) ? since : std::nullopt;
}

/// Reads the film's sheet and plays the first of its files.
std::optional<qint64> play(Application &application, const QString &title)
{
    AppState &state = application.state();
    for (const MediaItem &item : state.popular() + state.featured()) {
        if (item.title != title)
            continue;
        state.selectItem(item);
        QTest::qWait(reading);
        const qint64 pressed = now();
        QTest::keyClick(application.window(), Qt::Key_Return);
        QTest::qWait(watching);
        if (state.showPlayer() && state.playback()->player()->currentTime() > 0)
            return pressed;
        break;
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4)
        return std::puts("bench_far_program SERVICE CERTIFICATES TITLE"), 2;
    ServiceHosts hosts;
    hosts.archive = QString::fromLocal8Bit(argv[1]);
    QFile certificates(QString::fromLocal8Bit(argv[2]));
    if (!certificates.open(QIODevice::ReadOnly))
        return std::puts("no certificates"), 2;
    hosts.certificates = certificates.readAll();
    ServiceHosts::replace(hosts);
    const QTemporaryDir folders;
    StandardFolders::relocate(folders.path());

    int own = 1; // of the arguments
    Application application(own, argv);
    if (!application.show())
        return 1;
    const auto posters = allPosters(application);
    if (!posters)
        return std::puts("failed posters"), 1;
    std::printf("posters %lld\n", static_cast<long long>(*posters));
    const auto pressed = play(application, QString::fromLocal8Bit(argv[3]));
    if (!pressed)
        return std::puts("failed play"), 1;
    std::printf("play %lld\n", static_cast<long long>(*pressed));
    return 0;
}
