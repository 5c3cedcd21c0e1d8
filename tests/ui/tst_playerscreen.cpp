// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"
#include "testlib/Table.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace tavelo;

class tst_PlayerScreen : public QObject
{
    Q_OBJECT

private:
    static constexpr int patience = 10'000; // milliseconds
    static constexpr int secondClick = 300; // milliseconds, by when one click is not half of two

    static bool startPaused(Program &program)
    {
        if (!program.startFilm())
            return false;
        program.key(Qt::Key_Space);
        return QTest::qWaitFor([&] { return !program.player().isPlaying(); }, patience);
    }

    /// Of film2, which nothing is known of before.
    static HttpService::Answer &serveNewFilm(const QByteArray &name)
    {
        Program::serveFiles("film2", {name});
        const QByteArray path = "/download/film2/" + name;
        Program::server().serve(path, Program::server().at("/download/film0/reel.mp4"));
        return Program::server().at(path);
    }

    static QRectF placeOf(const QQuickItem *item)
    {
        return item->mapRectToScene(item->boundingRect());
    }

    /// The places of what is there to be pressed or dragged.
    static QList<QRectF> controlsOf(const Program &program)
    {
        QList<QRectF> places;
        for (const QQuickItem *item : program.visibleItems()) {
            if (item->inherits("QQuickAbstractButton") || item->inherits("QQuickSlider"))
                places.append(placeOf(item));
        }
        return places;
    }

private Q_SLOTS:
    void playerKeys()
    {
        Program program;
        QVERIFY(program.startFilm());
        VideoPlayerManager &player = program.player();
        program.key(Qt::Key_Space);
        QTRY_VERIFY(!player.isPlaying());
        player.seek(4);
        program.key(Qt::Key_Left);
        QCOMPARE(player.currentTime(), 0.0);
        program.key(Qt::Key_Right);
        QCOMPARE(player.currentTime(), 10.0);
        program.key(Qt::Key_Right);
        QCOMPARE(player.currentTime(), player.duration());
        program.key(Qt::Key_Down);
        QVERIFY(qAbs(player.volume() - 0.9F) < 0.001F);
        program.key(Qt::Key_M);
        QVERIFY(player.isMuted());
        program.key(Qt::Key_Up);
        QVERIFY(!player.isMuted());
        program.key(Qt::Key_F);
        QTRY_COMPARE(program.window()->visibility(), QWindow::FullScreen);
        QTRY_VERIFY(!program.item("Sidebar"));
        program.key(Qt::Key_F);
        QTRY_VERIFY(program.window()->visibility() != QWindow::FullScreen);
        program.key(Qt::Key_Escape);
        QVERIFY(!program.state().showPlayer());
        QTRY_VERIFY(program.item("MiniPlayer"));
        program.key(Qt::Key_M);
        QVERIFY(!player.isMuted());
    }

    void clicksOnTheFilm()
    {
        Program program;
        QVERIFY(program.startFilm());
        VideoPlayerManager &player = program.player();
        const QPoint film(600, 300);
        program.clickAt(film);
        QTRY_VERIFY(!player.isPlaying());

        QSignalSpy statuses(&player, &VideoPlayerManager::isPlayingChanged);
        QTest::mouseDClick(program.window(), Qt::LeftButton, {}, film);
        QTRY_COMPARE(program.window()->visibility(), QWindow::FullScreen);
        QVERIFY(!player.isPlaying());
        QCOMPARE(statuses.size(), 0);
    }

    void clicksBesideTheFilm()
    {
        Program program;
        QVERIFY(startPaused(program)); // so that both bars stay
        const QQuickItem *pointer = program.item("PlayerPointer");
        const QSignalSpy clicks(pointer, SIGNAL(toggled()));
        const QSignalSpy doubleClicks(pointer, SIGNAL(doubleClicked()));
        const QRectF screen = placeOf(program.item("PlayerScreen"));
        const QList<QRectF> controls = controlsOf(program);
        const QList<QRectF> bars{placeOf(program.item("PlayerTopBar")),
                                 placeOf(program.item("PlayerControls"))};
        QList<QPoint> film;
        int beside = 0;
        for (int y = 5; y < screen.height(); y += 24) {
            for (int x = 5; x < screen.width(); x += 24) {
                const QPoint point = screen.topLeft().toPoint() + QPoint(x, y);
                const auto lies = [&](const QRectF &place) { return place.contains(point); };
                if (std::ranges::any_of(controls, lies))
                    continue;
                if (std::ranges::none_of(bars, lies)) {
                    film.append(point);
                    continue;
                }
                ++beside;
                program.clickAt(point);
                QTest::mouseDClick(program.window(), Qt::LeftButton, {}, point);
                QVERIFY2(doubleClicks.isEmpty(), qPrintable(QString("%1, %2").arg(x).arg(y)));
            }
        }
        QVERIFY(beside > 100);
        QTest::qWait(secondClick);
        QCOMPARE(clicks.size(), 0);
        for (qsizetype i = 0; i < film.size(); i += film.size() / 12) {
            const qsizetype before = clicks.size();
            program.clickAt(film[i]);
            QTRY_COMPARE(clicks.size(), before + 1);
        }
    }

    void keysPressWhatTabReached_data()
    {
        const auto row = columns<int>("key");
        row("Space", int(Qt::Key_Space));
        row("Return", int(Qt::Key_Return));
        row("Enter", int(Qt::Key_Enter));
    }

    void keysPressWhatTabReached()
    {
        QFETCH(int, key);
        Program program;
        QVERIFY(startPaused(program));
        VideoPlayerManager &player = program.player();
        QVERIFY(program.tabTo("Mute"));
        QTest::keyPress(program.window(), Qt::Key(key));
        for (int repeat = 0; repeat < 3; ++repeat) {
            for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
                QKeyEvent held(type, key, {}, {}, true);
                QCoreApplication::sendEvent(program.window(), &held);
            }
        }
        QTest::keyRelease(program.window(), Qt::Key(key));
        QVERIFY(player.isMuted()); // once
        QVERIFY(!player.isPlaying());
        program.key(Qt::Key_M); // the other keys are the film's still
        QVERIFY(!player.isMuted());

        QVERIFY(program.tabTo("Subtitles"));
        program.key(Qt::Key(key));
        QTRY_VERIFY(program.control("✓ Off"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.control("✓ Off"));
        QVERIFY(!player.isPlaying());

        QVERIFY(program.click("Mute"));
        QVERIFY(player.isMuted());
        program.key(Qt::Key_Space); // no longer any button's
        QTRY_VERIFY(player.isPlaying());
        QVERIFY(player.isMuted());
    }

    void spinnerWaits()
    {
        Program program;
        HttpService::Answer &film = serveNewFilm("late.mp4");
        film.delay = std::chrono::milliseconds(5000);
        QVERIFY(program.show());
        QVERIFY(program.click("Film 2"));
        QVERIFY(program.click("Play"));
        VideoPlayerManager &player = program.player();
        QTRY_VERIFY(player.isBuffering());
        QElapsedTimer waiting;
        waiting.start();
        QVERIFY(!program.item("Spinner"));
        QTRY_VERIFY(program.item("Spinner"));
        QVERIFY2(waiting.elapsed() >= 200, qPrintable(QString::number(waiting.elapsed())));
        const QString trouble = u"Reconnecting…"_qs;
        const QRectF place = placeOf(program.item("Spinner"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text(trouble), patience);
        film.delay = {};
        QCOMPARE(placeOf(program.item("Spinner")), place);
        QVERIFY(placeOf(program.item("WaitPanel")).contains(placeOf(program.text(trouble))));
        QVERIFY(program.click("Back"));
        QTRY_VERIFY(!program.item("Spinner") && program.text(trouble));
        QVERIFY(program.click("Expand"));
        QTRY_VERIFY_WITH_TIMEOUT(!player.isBuffering(), patience);
        QVERIFY(!program.item("Spinner") && !program.text(trouble));
    }

    void controlsRest()
    {
        Program program;
        QVERIFY(program.startFilm());
        QTest::mouseMove(program.window(), {600, 300});
        QTRY_VERIFY(program.control("Full screen"));
        QTRY_VERIFY_WITH_TIMEOUT(!program.control("Full screen"), patience);
        QTest::mouseMove(program.window(), {620, 300});
        QTRY_VERIFY(program.control("Full screen"));
        QTRY_VERIFY_WITH_TIMEOUT(!program.control("Full screen"), patience);
        program.player().seek(0); // the clip is short
        QVERIFY(program.tabTo("Mute"));
        QTRY_VERIFY(program.control("Full screen"));
        const QPoint pause = Program::middleOf(program.control("Pause"));
        for (int step = 0; step < 35; ++step) { // moving above a control, longer than they stay
            QTest::mouseMove(program.window(), pause + QPoint(step % 2, 0));
            QTest::qWait(100);
        }
        QVERIFY(program.control("Full screen"));
        QTRY_VERIFY_WITH_TIMEOUT(!program.control("Full screen"), patience);
        program.key(Qt::Key_Space);                  // not the hidden button's
        QTRY_VERIFY(program.control("Full screen")); // a film that stands shows them
        QVERIFY(!program.player().isMuted());
    }

    void madeAheadAndAnewForEveryFilm_data()
    {
        const auto row = columns<bool>("made");
        row("made ahead", true);
        row("still being made", false);
    }

    void madeAheadAndAnewForEveryFilm()
    {
        QFETCH(bool, made);
        Program program;
        QVERIFY(program.show());
        const QList<QQuickItem *> parts = program.item("DetailArea")->childItems();
        const auto screen = std::ranges::find_if(parts, [](const QQuickItem *part) {
            return part->property("file") == "player/PlayerScreen.qml";
        });
        QVERIFY(screen != parts.end());
        const auto status = [&] { return (*screen)->property("status").toInt(); };
        // Loader.Ready; Loader.Loading, or what comes after it
        QTRY_VERIFY(status() == 1 || (!made && status() == 2));
        for (int round = 0; round < 2; ++round) {
            program.state().resume(Program::watched(1, 0, 12));
            QTRY_VERIFY_WITH_TIMEOUT(program.player().duration() > 0, patience);
            QVERIFY(program.control("Full screen"));
            QTest::mouseMove(program.window(), {600, 300});
            QTest::mouseMove(program.window(), {620, 300});
            QTRY_VERIFY_WITH_TIMEOUT(!program.control("Full screen"), patience);
            program.key(Qt::Key_Space);
            QTRY_VERIFY(!program.player().isPlaying());
            program.key(Qt::Key_Escape);
            QTRY_VERIFY(program.control("Close player"));
            program.key(Qt::Key_Space); // no longer the player's
            QVERIFY(!program.player().isPlaying());
            QVERIFY(program.click("Close player"));
        }
    }

    void scrubbingSeeksOnce()
    {
        Program program;
        QVERIFY(startPaused(program));
        VideoPlayerManager &player = program.player();
        QQuickItem *slider = program.item("Scrubber")->findChild<QQuickItem *>("position");
        QVERIFY(slider);
        const QPoint left = slider->mapToScene({slider->width() * 0.1, 10}).toPoint();
        const QPoint right = slider->mapToScene({slider->width() * 0.75, 10}).toPoint();
        QSignalSpy times(&player, &VideoPlayerManager::currentTimeChanged);
        QTest::mousePress(program.window(), Qt::LeftButton, {}, left);
        for (int step = 1; step <= 8; ++step)
            QTest::mouseMove(program.window(), left + (right - left) * step / 8);
        QCOMPARE(times.size(), 0);
        const QQuickItem *clock = program.item("ClockLabel");
        QVERIFY(clock);
        QTRY_VERIFY(QStringList({"0:08", "0:09"}).contains(clock->property("text").toString()));
        int clocks = 0; // the left one, and one over the thumb
        for (const QQuickItem *item : program.visibleItems())
            clocks += item->property("text") == clock->property("text") &&
                      QByteArray(item->metaObject()->className()).startsWith("ClockLabel_");
        QCOMPARE(clocks, 2);
        QTest::mouseRelease(program.window(), Qt::LeftButton, {}, right);
        QVERIFY(times.size() >= 1);
        QVERIFY2(qAbs(player.currentTime() - 9) < 0.3,
                 qPrintable(QString::number(player.currentTime())));
    }

    void menusChoose()
    {
        Program program;
        QVERIFY(program.startFilm());
        QVERIFY(program.click("Playback speed"));
        QVERIFY(program.click("1.25x"));
        QCOMPARE(program.player().rate(), 1.25F);
        QTRY_VERIFY(program.text("1.25x"));
        QVERIFY(program.click("Playback speed"));
        QTRY_VERIFY(program.control("✓ 1.25x"));
        QVERIFY(!program.control("✓ 1.0x"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.control("✓ 1.25x"));
        QVERIFY(program.state().showPlayer()); // Escape was the menu's

        QVERIFY(program.click("Audio track"));
        QVERIFY(program.click("French"));
        QTRY_COMPARE(program.player().selectedAudio().value_or(AudioTrack()).name, "French");
        QVERIFY(program.click("Aspect ratio"));
        QVERIFY(program.click("Fill"));
        QCOMPARE(program.player().aspectName(), "Fill");
    }

    void playbackError()
    {
        Program program;
        HttpService::Answer &film = serveNewFilm("gone.mp4");
        film.status = 404;
        QVERIFY(program.show());
        QVERIFY(program.click("Film 2"));
        QVERIFY(program.click("Play"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Playback error"), 30'000);
        QVERIFY(program.text(program.player().errorText()));
        QVERIFY(!program.text("Tavelo goes on trying.")); // as it would when the server is silent
        QSignalSpy clicks(program.item("PlayerPointer"), SIGNAL(toggled()));
        program.clickAt(placeOf(program.item("ErrorPanel")).topLeft().toPoint() + QPoint(20, 20));
        QVERIFY(!clicks.wait(secondClick));
        film.status = 200;
        QVERIFY(program.click("Retry"));
        QTRY_VERIFY_WITH_TIMEOUT(program.player().duration() > 0, patience);
        QVERIFY(!program.text("Playback error"));
    }
};

TAVELO_WINDOW_TEST(tst_PlayerScreen)
#include "tst_playerscreen.moc"
