// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/MediaEngine.h"
#include "playback/VideoPlayerManager.h"
#include "testlib/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace tavelo;

namespace {

QUrl clip(const char *name)
{
    return QUrl::fromLocalFile(QStringLiteral(TAVELO_CLIPS "/") + QLatin1String(name));
}

std::unique_ptr<MediaPlayer> realEngine()
{
    return MediaEngine::create({.headless = true});
}

} // namespace

class tst_VideoPlayerManager : public QObject
{
    Q_OBJECT

private:
    static bool waitDuration(const VideoPlayerManager &manager)
    {
        return QTest::qWaitFor([&] { return manager.duration() > 0; }, 10'000);
    }

private Q_SLOTS:
    void startsWhereTold_data()
    {
        const auto row = columns<double, double>("start", "expected");
        row("up to a second is the beginning", 0.8, 0.0);
        row("past a second is exact", 1.2, 1.2);
        row("far into the film", 9.64, 9.64);
    }

    void startsWhereTold()
    {
        QFETCH(double, start);
        QFETCH(double, expected);
        VideoPlayerManager manager(realEngine);
        QList<double> times;
        connect(&manager, &VideoPlayerManager::currentTimeChanged,
                [&](double seconds) { times.append(seconds); });
        manager.load(clip("counted.mp4"), start);
        QCOMPARE(manager.currentTime(), start);
        QVERIFY(manager.isPlaying());
        QTRY_VERIFY_WITH_TIMEOUT(times.size() >= 3, 10'000);
        QCOMPARE(times[0], start);
        const double first = times[1];
        QVERIFY2(first >= expected - 0.04 && first < expected + 0.7,
                 qPrintable(QString::number(first)));
        QVERIFY(qAbs(manager.duration() - 12) < 0.1);
    }

    void rateChosenWhilePaused()
    {
        VideoPlayerManager manager(realEngine);
        manager.load(clip("counted.mp4"), 0);
        QVERIFY(waitDuration(manager));
        manager.toggle();
        QTRY_VERIFY(!manager.isPlaying());
        manager.setRate(4);
        QVERIFY(!manager.isPlaying());
        manager.toggle();
        QTRY_VERIFY(manager.isPlaying() && !manager.isBuffering());
        QElapsedTimer timer;
        timer.start();
        const double from = manager.currentTime();
        QTRY_VERIFY_WITH_TIMEOUT(manager.currentTime() > from + 6, 10'000);
        QVERIFY2(timer.elapsed() < 5'000, "it went on at the former speed");
    }

    void seekLimits()
    {
        VideoPlayerManager manager(realEngine);
        manager.seek(9999); // nothing loaded: the length is unknown
        QCOMPARE(manager.currentTime(), 9999.0);
        manager.load(clip("counted.mp4"), 0);
        QVERIFY(waitDuration(manager));
        manager.seek(-5);
        QCOMPARE(manager.currentTime(), 0.0);
        manager.seek(9999);
        QCOMPARE(manager.currentTime(), manager.duration());
    }

    void volumeSteps()
    {
        VideoPlayerManager manager(realEngine);
        manager.setVolume(0.95F);
        manager.adjustVolume(0.1F);
        QCOMPARE(manager.volume(), 1.0F);
        manager.setVolume(0.05F);
        manager.setMuted(true);
        manager.adjustVolume(-0.1F);
        QCOMPARE(manager.volume(), 0.0F);
        QVERIFY(manager.isMuted());
        manager.adjustVolume(0.1F);
        QVERIFY(!manager.isMuted());
    }

    void everyAssignmentIsTold()
    {
        VideoPlayerManager manager(realEngine);
        QSignalSpy rate(&manager, &VideoPlayerManager::rateChanged);
        QSignalSpy aspect(&manager, &VideoPlayerManager::aspectChanged);
        manager.setRate(1);
        manager.setAspectName(QStringLiteral("Fit"));
        manager.setAspectName(QStringLiteral("fit"));
        QCOMPARE(rate.size(), 1);
        QCOMPARE(aspect.size(), 1);
        manager.setAspectName(QStringLiteral("Stretch"));
        QCOMPARE(gravityOf(manager.aspect()), VideoGravity::Resize);
    }

    void audioTracks()
    {
        VideoPlayerManager manager(realEngine);
        manager.selectAudio(1); // nothing to choose from
        QCOMPARE(manager.selectedAudio(), std::nullopt);
        manager.load(clip("counted.mp4"), 3);
        QTRY_COMPARE_WITH_TIMEOUT(manager.audioOptions().size(), 2, 10'000);
        manager.selectAudio(manager.audioOptions().last().id);
        QCOMPARE(manager.selectedAudio()->name, QStringLiteral("French"));
        manager.selectAudio(99);
        QCOMPARE(manager.selectedAudio()->name, QStringLiteral("French"));
    }

    void tellsOfTheEndAndKeepsTheItem()
    {
        VideoPlayerManager manager(realEngine);
        int finished = 0;
        manager.setOnFinished([&] { ++finished; });
        manager.load(clip("short.mp4"), 0);
        QTRY_COMPARE_WITH_TIMEOUT(finished, 1, 10'000);
        QCOMPARE(manager.currentURL(), std::optional(clip("short.mp4")));
        QVERIFY(!manager.isPlaying());
        QVERIFY(manager.currentTime() > 1.9);
        QCOMPARE(manager.error(), std::nullopt);
    }

    void stopsInTheMiddleOfALoad()
    {
        VideoPlayerManager manager(realEngine);
        manager.load(clip("counted.mp4"), 5);
        manager.stop();
        QCOMPARE(manager.currentTime(), 0.0);
        QCOMPARE(manager.currentURL(), std::nullopt);
        QSignalSpy duration(&manager, &VideoPlayerManager::durationChanged);
        manager.load(clip("short.mp4"), 0);
        QVERIFY(waitDuration(manager));
        QVERIFY2(qAbs(manager.duration() - 2) < 0.1, "the stopped film came back");
    }

    void failureKeepsThePlace()
    {
        VideoPlayerManager manager(realEngine);
        const QUrl missing = QUrl::fromLocalFile(QStringLiteral("/nonexistent/film.mp4"));
        manager.load(missing, 42);
        QTRY_VERIFY_WITH_TIMEOUT(manager.error().has_value(), 10'000);
        QVERIFY(!manager.isBuffering());
        QCOMPARE(manager.currentURL(), std::optional(missing));
        QCOMPARE(manager.currentTime(), 42.0);
        manager.load(clip("short.mp4"), 0);
        QCOMPARE(manager.error(), std::nullopt);
    }

    void withoutAnEngine()
    {
        VideoPlayerManager manager([] { return nullptr; });
        manager.load(clip("short.mp4"), 0);
        QVERIFY(manager.error().has_value());
        QVERIFY(!manager.isPlaying());
        manager.toggle();
        manager.seek(3);
        manager.stop();
    }
};

QTEST_GUILESS_MAIN(tst_VideoPlayerManager)
#include "tst_videoplayermanager.moc"
