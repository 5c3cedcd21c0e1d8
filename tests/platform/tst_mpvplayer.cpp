// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/MediaEngine.h"
#include "testlib/PlayerProbe.h"
#include "testlib/Table.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

QUrl clip(const char *name)
{
    return QUrl::fromLocalFile(QStringLiteral(TAVELO_CLIPS "/") + QLatin1String(name));
}

} // namespace

/// The engine on files. What a network can do to it is in tst_mpvnetwork.
class tst_MpvPlayer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MediaPlayer> m_player;
    std::unique_ptr<PlayerProbe> m_probe;

private Q_SLOTS:
    void init()
    {
        m_player = MediaEngine::create({.headless = true});
        QVERIFY(m_player);
        m_probe = std::make_unique<PlayerProbe>(m_player.get());
    }

    void cleanup() { m_player.reset(); }

    void playsToItsEnd()
    {
        m_player->load(clip("short.mp4"));
        QCOMPARE(m_player->timeControlStatus(), TimeControlStatus::Paused);
        m_player->play();
        QCOMPARE(m_player->timeControlStatus(), TimeControlStatus::Waiting);
        QVERIFY(m_probe->waitReady());
        QVERIFY(qAbs(m_player->duration() - 2) < 0.1);
        QCOMPARE(m_player->loadedRanges(), (QList<TimeRange>{{0, m_player->duration()}}));
        QVERIFY(m_probe->waitEnd());
        QCOMPARE(m_player->timeControlStatus(), TimeControlStatus::Paused);
        QVERIFY(qAbs(m_player->currentTime() - 2) < 0.1);
        QVERIFY(m_player->hasItem());
        QVERIFY2(std::ranges::is_sorted(m_probe->ticks), "time ran backwards");

        m_player->play(); // once more, from the start
        QVERIFY(m_probe->waitPlaying());
        QVERIFY(m_player->currentTime() < 1.5);
        QTRY_COMPARE_WITH_TIMEOUT(m_probe->ends, 2, 10'000);
    }

    void seeksWhilePausedAndStaysPaused()
    {
        m_player->load(clip("counted.mp4"));
        m_player->pause();
        QVERIFY(m_probe->waitReady());
        for (const double target : {7.0, 0.4, 11.0}) {
            QVERIFY(m_probe->seek(target));
            QVERIFY2(qAbs(m_player->currentTime() - target) <= 0.04,
                     qPrintable(QString::number(m_player->currentTime())));
        }
        QVERIFY(!m_probe->statuses.contains(TimeControlStatus::Playing));
    }

    void onlyTheLastOfManySeeksFinishes()
    {
        m_player->load(clip("counted.mp4"));
        m_player->play();
        QVERIFY(m_probe->waitReady());
        QList<bool> outcomes;
        for (const double target : {3.0, 9.0, 1.0, 6.0})
            m_player->seek(target, [&](bool finished) { outcomes.append(finished); });
        QTRY_COMPARE_WITH_TIMEOUT(outcomes.size(), 4, 10'000);
        QCOMPARE(outcomes, (QList<bool>{false, false, false, true}));
        QVERIFY(qAbs(m_player->currentTime() - 6) < 0.5);
        for (const double tick : m_probe->ticks)
            QVERIFY2(tick < 1 || tick >= 5.9, "an abandoned seek's time was published");
    }

    void twoAudioTracks()
    {
        m_player->load(clip("counted.mp4"));
        m_player->play();
        QTRY_COMPARE_WITH_TIMEOUT(m_player->audioTracks().size(), 2, 10'000);
        const auto tracks = m_player->audioTracks();
        QCOMPARE(tracks[0].name, QStringLiteral("English"));
        QCOMPARE(tracks[1].name, QStringLiteral("French"));
        QTRY_COMPARE(m_player->selectedAudioTrack(), tracks[0].id);
        m_player->selectAudioTrack(tracks[1].id);
        QTRY_COMPARE(m_player->selectedAudioTrack(), tracks[1].id);

        m_player->load(clip("counted.mp4")); // the choice was this film's
        QVERIFY(m_probe->waitReady());
        QTRY_COMPARE(m_player->selectedAudioTrack(), tracks[0].id);
        for (const auto &[wanted, expected] : {std::pair(1, 1), std::pair(7, 0)}) {
            m_player->load(clip("counted.mp4"));
            m_player->selectAudioTrack(wanted + 1);
            QVERIFY(m_probe->waitReady());
            QTRY_COMPARE(m_player->selectedAudioTrack(), tracks[expected].id);
        }
    }

    void playsAtTheDefaultRate()
    {
        m_player->load(clip("counted.mp4"));
        m_player->setDefaultRate(4);
        m_player->pause();
        QVERIFY(m_probe->waitReady());
        m_player->play();
        QVERIFY(m_probe->waitPlaying());
        QElapsedTimer timer;
        timer.start();
        QVERIFY(m_probe->waitEnd());
        QVERIFY2(timer.elapsed() < 8'000, "12 s of film took as long as at normal speed");
    }

    void refuses_data()
    {
        const auto row = columns<QUrl, QByteArray>("url", "content");
        const auto file = [](const char *name) { return QUrl::fromLocalFile(QLatin1String(name)); };
        row("text", file("text.mp4"), "Not a film at all.\n");
        row("empty", file("empty.mp4"), QByteArray());
        row("playlist that names a film", file("list.mp4"),
            QByteArray("#EXTM3U\n") + clip("short.mp4").toEncoded() + '\n');
        row("stream playlist", file("list.m3u8"),
            QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:2,\n") +
                clip("short.mp4").toEncoded() + "\n#EXT-X-ENDLIST\n");
        row("list for joining files", file("join.mp4"),
            QByteArray("ffconcat version 1.0\nfile '" TAVELO_CLIPS "/short.mp4'\n"));
        row("edit list of the engine's own", file("edl.mp4"),
            QByteArray("# mpv EDL v0\n" TAVELO_CLIPS "/short.mp4\n"));
        row("not there", file("nowhere.mp4"), QByteArray());
        row("another scheme", QUrl(QStringLiteral("ftp://127.0.0.1/film.mp4")), QByteArray());
        row("the engine's own scheme", QUrl(QStringLiteral("memory://film")), QByteArray());
    }

    void refuses()
    {
        QFETCH(QUrl, url);
        QFETCH(QByteArray, content);
        QTemporaryDir folder;
        if (url.isLocalFile()) {
            const QString path = folder.filePath(url.fileName());
            QFile file(path);
            if (!path.contains(QLatin1String("nowhere"))) {
                QVERIFY(file.open(QIODevice::WriteOnly));
                file.write(content);
                file.close();
            }
            url = QUrl::fromLocalFile(path);
        }
        m_player->load(url);
        m_player->play();
        QVERIFY(m_probe->waitFailed());
        QVERIFY(!m_player->itemError().isEmpty());
        QCOMPARE(m_player->timeControlStatus(), TimeControlStatus::Paused);

        m_player->load(clip("short.mp4")); // and the engine still works
        m_player->play();
        QVERIFY(m_probe->waitPlaying());
        QVERIFY(m_player->itemError().isEmpty());
    }

    void loadDuringLoadPlaysTheLast()
    {
        for (int round = 0; round < 5; ++round) {
            m_player->load(clip("counted.mp4"));
            m_player->load(QUrl::fromLocalFile(QStringLiteral("/nonexistent.mp4")));
            m_player->load(clip("short.mp4"));
            m_player->play();
            QVERIFY(m_probe->waitReady());
            QVERIFY(qAbs(m_player->duration() - 2) < 0.1);
        }
    }

    void clearDuringLoad()
    {
        m_player->load(clip("counted.mp4"));
        m_player->play();
        m_player->clear();
        QVERIFY(!m_player->hasItem());
        QCOMPARE(m_player->timeControlStatus(), TimeControlStatus::Paused);
        m_player->load(clip("short.mp4"));
        QVERIFY(m_probe->waitReady());
        QVERIFY2(qAbs(m_player->duration() - 2) < 0.1, "the cleared film came back");
    }

    void endsInEveryState()
    {
        m_player.reset(); // without an item
        for (const bool seeking : {false, true}) {
            init();
            m_player->load(clip("counted.mp4"));
            m_player->play();
            if (!seeking)
                continue; // while it loads
            QVERIFY(m_probe->waitReady());
            bool told = false;
            m_player->seek(5, [&](bool) { told = true; });
            m_player.reset();
            QVERIFY2(!told, "a player that is gone still told of its seek");
        }
    }
};

QTEST_GUILESS_MAIN(tst_MpvPlayer)
#include "tst_mpvplayer.moc"
