// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "WindowTest.h"
#include "platform/media/MediaEngine.h"
#include "playback/VideoPlayerManager.h"
#include "testlib/Table.h"
#include "ui/PlayerSurface.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace tavelo;

namespace {

constexpr double framesPerSecond = 25;

QUrl clip(const char *name)
{
    return QUrl::fromLocalFile(QStringLiteral(TAVELO_CLIPS "/") + QLatin1String(name));
}

/// A window with two places for one surface, a large one above a small one.
struct Screen
{
    Screen()
        : manager(std::make_unique<VideoPlayerManager>([] { return MediaEngine::create(); }))
        , window(std::make_unique<QQuickWindow>())
    {
        window->setColor(Qt::black);
        window->resize(640, 400);
        large.setParentItem(window->contentItem());
        large.setSize({640, 128});
        small.setParentItem(window->contentItem());
        small.setPosition({0, 200});
        small.setSize({320, 64});
        surface = new PlayerSurface(&large);
        surface->setSize(large.size());
        surface->setPlayer(manager.get());
        window->show();
        // A picture of a window that is not on the screen yet is drawn in a context of its own.
        (void)QTest::qWaitForWindowExposed(window.get());
    }
    ~Screen() { delete surface; }

    void moveTo(QQuickItem *place) const
    {
        surface->setParentItem(place);
        surface->setSize(place->size());
    }

    /// The number that the shown frame bears; 0 also for no picture.
    int shownFrame() const
    {
        const QImage picture = window->grabWindow();
        const QRectF area = surface->mapRectToScene(surface->boundingRect());
        int number = 0;
        for (int bit = 0; bit < 16; ++bit) {
            const QPointF middle =
                area.topLeft() + QPointF((bit + 0.5) * area.width() / 16, area.height() / 2);
            if (qGray(picture.pixel(middle.toPoint())) > 128)
                number |= 1 << bit;
        }
        return number;
    }

    bool waitReady() const
    {
        return QTest::qWaitFor([&] { return manager->duration() > 0; }, 10'000);
    }

    std::unique_ptr<VideoPlayerManager> manager;
    std::unique_ptr<QQuickWindow> window;
    QQuickItem large;
    QQuickItem small;
    PlayerSurface *surface = nullptr;
};

} // namespace

class tst_PlayerSurface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seekShowsThatFrame()
    {
        Screen screen;
        screen.manager->load(clip("counted.mp4"), 0);
        QVERIFY(screen.waitReady());
        screen.manager->toggle();
        for (const double seconds : {7.0, 3.48, 0.2, 11.0}) {
            screen.manager->seek(seconds);
            QTRY_COMPARE_WITH_TIMEOUT(screen.shownFrame(), qRound(seconds * framesPerSecond),
                                      10'000);
        }
    }

    void startsAtItsPlaceWithoutAFlashOfTheBeginning()
    {
        Screen screen;
        screen.manager->load(clip("counted.mp4"), 6);
        QList<int> frames;
        const bool plays = QTest::qWaitFor(
            [&] {
                frames.append(screen.shownFrame());
                return frames.last() > 151;
            },
            10'000);
        QVERIFY(plays);
        for (const int frame : frames)
            QVERIFY2(frame == 0 || frame >= 149, qPrintable(QString::number(frame)));
    }

    void movesWithoutABlackFrame()
    {
        Screen screen;
        screen.manager->load(clip("counted.mp4"), 2);
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        int last = 0;
        for (int i = 0; i < 12; ++i) {
            screen.moveTo(i % 2 ? &screen.large : &screen.small);
            const int frame = screen.shownFrame();
            QVERIFY2(frame >= last && frame > 50, qPrintable(QString::number(frame)));
            last = frame;
            QTest::qWait(30); // play a little in between
        }
        QVERIFY(screen.manager->isPlaying());
    }

    void gravity_data()
    {
        const auto row = columns<QString, bool>("aspect", "reachesTheTop");
        row("fit", "Fit", false);
        row("fill", "Fill", true);
        row("stretch", "Stretch", true);
    }

    void gravity()
    {
        QFETCH(QString, aspect);
        QFETCH(bool, reachesTheTop);
        Screen screen;
        screen.large.setSize({128, 128}); // the clip is five times as wide as high
        screen.moveTo(&screen.large);
        screen.manager->setAspectName(aspect);
        screen.manager->load(clip("counted.mp4"), 0);
        QVERIFY(screen.waitReady());
        screen.manager->toggle();
        screen.manager->seek(10.2); // frame 255: white bars from the left edge to the middle
        const auto isWhite = [&](int x, int y) {
            return qGray(screen.window->grabWindow().pixel(x, y)) > 128;
        };
        const int x = aspect == "Fill" ? 58 : 20;
        QTRY_VERIFY_WITH_TIMEOUT(isWhite(x, 64), 10'000);
        QCOMPARE(isWhite(x, 6), reachesTheTop);
    }

    void drawsAgainAfterTheSurfaceWasGone()
    {
        Screen screen;
        screen.manager->load(clip("counted.mp4"), 2);
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        delete screen.surface;
        screen.window->grabWindow(); // lets the scene graph let go of it
        screen.surface = new PlayerSurface(&screen.large);
        screen.surface->setSize(screen.large.size());
        screen.surface->setPlayer(screen.manager.get());
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        screen.manager->stop();
        screen.manager->load(clip("short.mp4"), 0);
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 0 && screen.shownFrame() < 50, 10'000);
    }

    void nothingIsLeftOfAFilmThatIsOver()
    {
        Screen screen;
        screen.manager->load(clip("counted.mp4"), 2);
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        screen.manager->stop();
        QTRY_COMPARE(screen.shownFrame(), 0);
        screen.manager->load(clip("counted.mp4"), 2);
        QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        screen.manager->load(QUrl::fromLocalFile(QStringLiteral("/nonexistent.mp4")), 0);
        QTRY_VERIFY(screen.manager->error());
        QTRY_COMPARE(screen.shownFrame(), 0);
    }

    void endsInEveryOrder_data()
    {
        columns<bool, QString>("windowFirst", "when");
        for (const bool windowFirst : {true, false}) {
            for (const char *when : {"empty", "loading", "playing", "seeking"})
                QTest::addRow("%s first, %s", windowFirst ? "window" : "engine", when)
                    << windowFirst << QString::fromLatin1(when);
        }
    }

    void endsInEveryOrder()
    {
        QFETCH(bool, windowFirst);
        QFETCH(QString, when);
        Screen screen;
        if (when != "empty")
            screen.manager->load(clip("counted.mp4"), 2);
        if (when == "playing" || when == "seeking")
            QTRY_VERIFY_WITH_TIMEOUT(screen.shownFrame() > 50, 10'000);
        if (when == "seeking")
            screen.manager->seek(9);
        if (windowFirst) {
            delete std::exchange(screen.surface, nullptr);
            screen.window.reset();
            screen.manager.reset();
        } else {
            screen.manager.reset();
            QCOMPARE(screen.shownFrame(), 0);
        }
    }
};

TAVELO_WINDOW_TEST(tst_PlayerSurface)
#include "tst_playersurface.moc"
