// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/files/StandardFolders.h"
#include "platform/media/MediaEngine.h"
#include "playback/PlaybackCoordinator.h"
#include "testlib/Table.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

std::unique_ptr<MediaPlayer> realEngine()
{
    return MediaEngine::create({.headless = true});
}

std::unique_ptr<MediaPlayer> noEngine()
{
    return nullptr;
}

QString clip(const char *name)
{
    return QString(TAVELO_CLIPS "/") + name;
}

SavedFile saved(const QString &path)
{
    return {QUrl::fromLocalFile(path), 0, {}};
}

HistoryEntry known(const QString &key, double position, double duration)
{
    HistoryEntry entry;
    entry.key = key;
    entry.itemID = "abc";
    entry.title = "A Film";
    entry.source = "http://127.0.0.1:1/film.mp4";
    entry.thumbnail = "http://127.0.0.1:1/p.jpg";
    entry.position = position;
    entry.duration = duration;
    return entry;
}

// An engine that tells whatever a test makes it tell.
class ToldEngine : public MediaPlayer
{
public:
    void load(const QUrl &, double) override { m_hasItem = true; }
    void clear() override { m_hasItem = false; }
    bool hasItem() const override { return m_hasItem; }
    void play() override {}
    void pause() override {}
    void setDefaultRate(float) override {}
    void setRate(float) override {}
    void setVolume(float) override {}
    void setMuted(bool) override {}
    void setVideoGravity(VideoGravity) override {}
    void seek(double, SeekDone) override {}
    ItemStatus itemStatus() const override { return status; }
    QString itemError() const override { return {}; }
    QString trouble() const override { return {}; }
    bool goesOnTrying() const override { return false; }
    TimeControlStatus timeControlStatus() const override { return TimeControlStatus::Playing; }
    bool hasArrived() const override { return arrived; }
    double currentTime() const override { return 0; }
    double duration() const override { return qQNaN(); }
    QList<TimeRange> loadedRanges() const override { return {}; }
    QList<AudioTrack> audioTracks() const override { return {}; }
    qint64 selectedAudioTrack() const override { return -1; }
    void selectAudioTrack(qint64) override {}
    std::shared_ptr<VideoRenderer> renderer() override { return nullptr; }

    ItemStatus status = ItemStatus::Ready;
    bool arrived = true;

private:
    bool m_hasItem = false;
};

// A program that plays until it is killed, and tells each position that it reaches.
[[noreturn]] void playUntilKilled(const QString &film)
{
    LibraryStore library;
    PlaybackCoordinator playback(library, realEngine);
    QObject::connect(playback.player(), &VideoPlayerManager::currentTimeChanged, [](double time) {
        std::printf("%.3f\n", time);
        std::fflush(stdout);
    });
    playback.playLocal(saved(film));
    QCoreApplication::exec();
    std::exit(0);
}

} // namespace

class TestPlaybackCoordinator : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LibraryStore> m_library;

    std::optional<HistoryEntry> onDisk(const QString &key) const
    {
        m_library->file().flush();
        return LibraryStore().entryFor(key);
    }
    double position(const QString &key) const
    {
        const auto entry = onDisk(key);
        return entry ? entry->position : -1;
    }

private Q_SLOTS:
    void init()
    {
        m_library = std::make_unique<LibraryStore>();
        m_library->clear();
    }

    void startsWhereTheViewerStopped_data()
    {
        const auto row = columns<double, double, double>("position", "duration", "start");
        row("in the middle", 300.0, 1000.0, 300.0);
        row("nearly done", 960.0, 1000.0, 0.0);
        row("just begun", 8.0, 1000.0, 0.0);
        row("length unknown", 300.0, 0.0, 300.0);
    }
    void startsWhereTheViewerStopped()
    {
        QFETCH(double, position);
        QFETCH(double, duration);
        QFETCH(double, start);
        m_library->record(known("abc|film.mp4", position, duration));
        PlaybackCoordinator playback(*m_library, noEngine);
        playback.playEntry(*m_library->entryFor("abc|film.mp4"));
        QCOMPARE(playback.player()->currentTime(), start);
        const auto entry = onDisk("abc|film.mp4");
        QCOMPARE(entry->position, start);
        QCOMPARE(entry->duration, duration);
        QCOMPARE(m_library->history().size(), 1);
    }

    void recordsWhatIsPlayed()
    {
        MediaItem item;
        item.id = "abc";
        item.title = "A Film";
        PlaybackCoordinator playback(*m_library, noEngine);
        const QDateTime before = QDateTime::currentDateTimeUtc();
        playback.play({"dir/a film.mp4", {}, {}, {}, "http://127.0.0.1:1/"}, item,
                      {{"a.srt", {}, {}, {}, "http://127.0.0.1:1/"}});
        const HistoryEntry entry = m_library->history().at(0);
        QCOMPARE(entry.key, "abc|dir/a film.mp4");
        QCOMPARE(entry.itemID, "abc");
        QCOMPARE(entry.title, "A Film");
        QCOMPARE(entry.source, "http://127.0.0.1:1/dir/a%20film.mp4");
        QVERIFY(!entry.isLocal);
        QCOMPARE(entry.thumbnail, item.thumbnailURL().toString());
        QVERIFY(entry.lastPlayed >= before.addMSecs(-1));
        QCOMPARE(playback.subtitles()->tracks(),
                 (QList<SubtitleTrack>{{"a.srt", QUrl("http://127.0.0.1:1/a.srt")}}));

        const QTemporaryDir folder;
        const QString film = folder.filePath("My Film.part 1.mp4");
        for (const char *name : {"My Film.part 1.mp4", "My Film.part 1.srt"})
            QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
        playback.playLocal(saved(film));
        const HistoryEntry local = m_library->history().at(0);
        QCOMPARE(local.key, "local|My Film.part 1.mp4");
        QCOMPARE(local.itemID, "local");
        QCOMPARE(local.title, "My Film.part 1");
        QCOMPARE(local.source, film);
        QVERIFY(local.isLocal && !local.thumbnail);
        QTRY_COMPARE(playback.subtitles()->tracks().size(), 1);

        playback.playEntry(entry);
        QVERIFY(playback.subtitles()->tracks().isEmpty());
        playback.playEntry(local);
        QTRY_COMPARE(playback.subtitles()->tracks().size(), 1);
        QCOMPARE(m_library->history().size(), 2);
        playback.stopPlayback();
        QVERIFY(playback.subtitles()->tracks().isEmpty() && !playback.nowPlaying());
    }

    void rebuildsKeys_data()
    {
        const auto row = columns<QString, QString>("key", "expected");
        row("own", "abc|film.mp4", "abc|film.mp4");
        row("separator in the name", "abc|a|b", "abc|a|b");
        row("of another item", "old|film.mp4", "abc|film.mp4");
        row("none", "film.mp4", "abc|film.mp4");
        row("at the end", "film|", "abc|film");
        row("alone", "|", "abc|");
        row("at the start", "|film", "abc|film");
    }
    void rebuildsKeys()
    {
        QFETCH(QString, key);
        PlaybackCoordinator playback(*m_library, noEngine);
        playback.playEntry(known(key, 0, 0));
        QTEST(playback.nowPlaying()->key, "expected");
    }

    void ignoresAnEntryWithoutAddress()
    {
        PlaybackCoordinator playback(*m_library, noEngine);
        HistoryEntry entry = known("abc|x", 50, 100);
        entry.source = "no address";
        QVERIFY(!playback.playEntry(entry));
        QVERIFY(!playback.nowPlaying() && m_library->history().isEmpty());
    }

    void keepsThePositionWhilePlaying()
    {
        PlaybackCoordinator playback(*m_library, realEngine);
        const QString key = "local|long.mp4";
        playback.playLocal(saved(clip("long.mp4")));
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->duration() > 0, 10'000);
        playback.player()->setRate(2);
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->currentTime() > 5.5, 10'000);
        const double written = position(key);
        QVERIFY2(written >= 5 && written <= playback.player()->currentTime(),
                 qPrintable(QString::number(written)));
        QVERIFY(qAbs(onDisk(key)->duration - 60) < 0.1);
        playback.player()->seek(40);
        QCOMPARE(position(key), 40);
        playback.player()->seek(38);
        QCOMPARE(position(key), 40);
        QTRY_VERIFY(playback.player()->currentTime() > 38.2);

        // Another film: the first one's place is written under its own key.
        const double left = playback.player()->currentTime();
        playback.playLocal(saved(clip("short.mp4")));
        QVERIFY(qAbs(position(key) - left) < 1);
        QCOMPARE(playback.nowPlaying()->key, "local|short.mp4");
        playback.playEntry(*m_library->entryFor(key));
        QVERIFY(qAbs(playback.player()->currentTime() - left) < 1);
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->currentTime() > left + 1, 10'000);
        const double stopped = playback.player()->currentTime();
        playback.stopPlayback();
        QVERIFY(qAbs(position(key) - stopped) < 1);
        QCOMPARE(playback.player()->currentTime(), 0);
    }

    void startsAFinishedFilmAgain()
    {
        PlaybackCoordinator playback(*m_library, realEngine);
        playback.playLocal(saved(clip("short.mp4")));
        QTRY_VERIFY_WITH_TIMEOUT(onDisk("local|short.mp4")->duration > 1.5, 10'000);
        QCOMPARE(position("local|short.mp4"), 0);
        QCOMPARE(m_library->history().size(), 1);
    }

    void showsSubtitlesByThePlayersTime()
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::copy(clip("counted.mp4"), folder.filePath("film.mp4")));
        QFile subtitles(folder.filePath("film.srt"));
        QVERIFY(subtitles.open(QIODevice::WriteOnly));
        subtitles.write("0:04 --> 0:05\nthere\n");
        subtitles.close();
        PlaybackCoordinator playback(*m_library, realEngine);
        playback.playLocal(saved(folder.filePath("film.mp4")));
        QTRY_COMPARE(playback.subtitles()->tracks().size(), 1);
        playback.subtitles()->select(playback.subtitles()->tracks().at(0));
        QTRY_COMPARE(playback.subtitles()->cues().size(), 1);
        playback.player()->seek(4);
        QCOMPARE(playback.subtitles()->currentText(), "there");
        QTRY_VERIFY_WITH_TIMEOUT(!playback.subtitles()->currentText(), 10'000);
    }

    void takesNoPositionThatNobodySaw_data()
    {
        const auto row = columns<ItemStatus, bool, double>("status", "arrived", "expected");
        row("shown", ItemStatus::Ready, true, 90);
        row("before the first picture or on the way of a seek", ItemStatus::Ready, false, 70);
        row("before the film is open", ItemStatus::Unknown, true, 70);
        row("of a failed item", ItemStatus::Failed, true, 70);
    }
    void takesNoPositionThatNobodySaw()
    {
        QFETCH(ItemStatus, status);
        QFETCH(bool, arrived);
        PlaybackCoordinator playback(*m_library, [] { return std::make_unique<ToldEngine>(); });
        m_library->record(known("abc|film.mp4", 40, 1000));
        playback.playEntry(*m_library->entryFor("abc|film.mp4"));
        auto *engine = static_cast<ToldEngine *>(playback.player()->player());
        playback.player()->seek(70);
        engine->status = status;
        engine->arrived = arrived;
        Q_EMIT engine->timeTicked(90);
        Q_EMIT engine->itemStatusChanged();
        playback.stopPlayback();
        QTEST(m_library->entryFor("abc|film.mp4")->position, "expected");
    }

    // What is told after the end, then what the history keeps.
    void forgetsTheEndOfAFilmOfUnknownLength_data()
    {
        const auto row = columns<double, double>("then", "kept");
        row("closed at its end", 300, 0);
        row("played again", 120, 120);
    }
    void forgetsTheEndOfAFilmOfUnknownLength()
    {
        QFETCH(double, then);
        PlaybackCoordinator playback(*m_library, [] { return std::make_unique<ToldEngine>(); });
        playback.playEntry(known("abc|film.ogv", 0, 0));
        MediaPlayer *engine = playback.player()->player();
        Q_EMIT engine->timeTicked(300);
        Q_EMIT engine->playedToEnd();
        Q_EMIT engine->timeTicked(then);
        playback.stopPlayback();
        QTEST(m_library->entryFor("abc|film.ogv")->position, "kept");
    }

    void goesOnAsItWasWhenTheServerGoes()
    {
        HttpService server;
        QFile film(clip("heavy.mov"));
        QVERIFY(film.open(QIODevice::ReadOnly));
        const QByteArray body = film.readAll();
        server.serve("/long.mp4", {.body = body,
                                   .ranges = true,
                                   .bytesPerSecond = 400'000,
                                   .cutAfter = body.size() * 3 / 10});
        HistoryEntry entry = known("abc|long.mp4", 0, 60);
        entry.source = server.base() + "/long.mp4";
        PlaybackCoordinator playback(*m_library, realEngine);
        m_library->record(entry);
        playback.playEntry(entry);
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->currentTime() > 1, 10'000);
        const QTemporaryDir folder;
        QFile cues(folder.filePath("a.srt"));
        QVERIFY(cues.open(QIODevice::WriteOnly));
        cues.write("0:01 --> 0:59\nthere\n");
        cues.close();
        playback.subtitles()->addLocal(QUrl::fromLocalFile(cues.fileName()));
        const qint64 track = playback.player()->audioOptions().last().id;
        playback.player()->selectAudio(track);
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->currentTime() > 3, 10'000);
        server.setListening(false);
        playback.player()->setRate(4);
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->error(), 60'000);
        const double stood = playback.player()->currentTime();
        QVERIFY2(stood > 10 && stood < 59, qPrintable(QString::number(stood)));
        QVERIFY(qAbs(position("abc|long.mp4") - stood) < 0.5);
        server.setListening(true);
        server.serve("/long.mp4", {.body = body, .ranges = true});
        playback.player()->retry();
        QTRY_VERIFY_WITH_TIMEOUT(playback.player()->currentTime() > stood + 1, 20'000);
        QCOMPARE(playback.player()->selectedAudioId(), track);
        QCOMPARE(playback.player()->player()->selectedAudioTrack(), track);
        QCOMPARE(playback.subtitles()->currentText(), "there");
        playback.stopPlayback();
        QVERIFY(position("abc|long.mp4") > stood + 1);
    }

    void losesFiveSecondsAtMostWhenKilled()
    {
        QProcess player;
        player.start(QCoreApplication::applicationFilePath(),
                     {"--play", clip("long.mp4"), QDir(StandardFolders::support()).path()});
        double reached = 0;
        while (reached < 11 && player.waitForReadyRead(20'000))
            reached = player.readAllStandardOutput().trimmed().split('\n').last().toDouble();
        player.kill();
        QVERIFY(player.waitForFinished());
        QVERIFY(reached >= 11);
        QVERIFY2(position("local|long.mp4") > reached - 5.6,
                 qPrintable(QString("%1 of %2").arg(position("local|long.mp4")).arg(reached)));
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--play") {
        StandardFolders::relocate(QDir(arguments.value(3) + "/../..").canonicalPath());
        playUntilKilled(arguments.value(2));
    }
    const QTemporaryDir folder;
    StandardFolders::relocate(folder.path());
    TestPlaybackCoordinator test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_playbackcoordinator.moc"
