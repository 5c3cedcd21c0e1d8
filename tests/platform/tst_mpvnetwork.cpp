// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/media/MediaEngine.h"
#include "testlib/PlayerProbe.h"
#include "testlib/Table.h"

#include <QFile>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

QByteArray clip(const char *name)
{
    QFile file(QStringLiteral(TAVELO_CLIPS "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QByteArray path = "/film.mp4";

/// Serves `film` as a public service would; the answer may be changed at any time.
HttpService::Answer &serveFilm(HttpService &server, const QByteArray &film)
{
    server.serve(path, {.body = film, .etag = "\"first\"", .ranges = true});
    return server.at(path);
}

} // namespace

/// The engine on a server that misbehaves.
class tst_MpvNetwork : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<MediaPlayer> m_player;
    std::unique_ptr<PlayerProbe> m_probe;

    void play(const HttpService &server, float rate = 1)
    {
        m_player->load(server.url(path));
        m_player->setDefaultRate(rate);
        m_player->play();
    }

private Q_SLOTS:
    void init()
    {
        m_player = MediaEngine::create({.headless = true});
        QVERIFY(m_player);
        m_probe = std::make_unique<PlayerProbe>(m_player.get());
    }

    void cleanup() { m_player.reset(); }

    void plays_data()
    {
        const auto row = columns<bool, bool, QByteArray>("ranges", "redirect", "film");
        row("plainly", true, false, "counted.mp4");
        row("from a server without ranges", false, false, "counted.mp4");
        row("over a redirect", true, true, "counted.mp4");
        row("with the index at the end", true, false, "short.mp4");
    }

    void plays()
    {
        QFETCH(bool, ranges);
        QFETCH(bool, redirect);
        QFETCH(QByteArray, film);
        HttpService server;
        serveFilm(server, clip(film)).ranges = ranges;
        if (redirect) {
            server.serve("/there.mp4", server.at(path));
            server.redirect(path, "/there.mp4", 302);
        }
        play(server, 4);
        QVERIFY(m_probe->waitEnd());
        QVERIFY(qAbs(m_player->currentTime() - m_player->duration()) < 0.2);
        for (const auto &request : server.requests())
            QCOMPARE(request.headers.value("user-agent"), "TaveloApp/1.0 (macOS)");
        QVERIFY(!m_player->loadedRanges().isEmpty());
        QVERIFY(m_player->loadedRanges().last().end > m_player->duration() - 1);
    }

    void failsAtOnce_data()
    {
        const auto row = columns<int, QByteArray, QString>("status", "body", "text");
        row("404", 404, "x", "HTTP 404");
        row("a page instead of a film", 200, "<html>Sign in</html>",
            "This file is not a film that can be played.");
        row("half an index", 200, clip("counted.mp4").first(2000),
            "This file is not a film that can be played.");
    }

    void failsAtOnce()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        HttpService server;
        serveFilm(server, body).status = status;
        play(server);
        QVERIFY(m_probe->waitFailed(3'000));
        QTEST(m_player->itemError(), "text");
    }

    void brokenConnectionIsTakenUpAgain()
    {
        HttpService server;
        auto &film = serveFilm(server, clip("counted.mp4"));
        const qint64 third = film.body.size() / 3;
        film.cutAfter = third;
        connect(m_player.get(), &MediaPlayer::itemStatusChanged, &server,
                [&] { film.cutAfter.reset(); });
        play(server, 4);
        QVERIFY(m_probe->waitEnd());
        QVERIFY(qAbs(m_player->currentTime() - 12) < 0.2);
        QCOMPARE(m_player->itemStatus(), ItemStatus::Ready);
        QVERIFY(server.requests().size() >= 2);
        // Not from its beginning: within the block that the connection broke in.
        const auto goesOn = [&](const auto &request) {
            const qint64 from = request.headers.value("range").sliced(6).split('-')[0].toLongLong();
            return from > third - 32 * 1024 && from <= third;
        };
        QVERIFY(server.count(goesOn) > 0);
    }

    void serverBackBeforeTheCacheIsPlayed()
    {
        HttpService server;
        auto &film = serveFilm(server, clip("counted.mp4"));
        film.cutAfter = film.body.size() * 2 / 3;
        play(server);
        QVERIFY(m_probe->waitTime(1));
        server.setListening(false);
        QVERIFY(m_probe->waitTime(3));
        film.cutAfter.reset();
        server.setListening(true);
        QVERIFY(m_probe->waitEnd());
        QVERIFY(!m_probe->statuses.mid(2).contains(TimeControlStatus::Waiting));
    }

    void neverTheEndOfTheFilm_data()
    {
        const auto row = columns<int, QString>("status", "text");
        row("no longer allowed", 403, "HTTP 403");
        row("another film", 200, "The film was changed on the server.");
    }

    void neverTheEndOfTheFilm()
    {
        QFETCH(int, status);
        HttpService server;
        auto &film = serveFilm(server, clip("counted.mp4"));
        film.cutAfter = film.body.size() / 3;
        connect(m_player.get(), &MediaPlayer::itemStatusChanged, &server, [&] {
            film.cutAfter.reset();
            film.status = status;
            film.etag = "\"second\"";
        });
        play(server, 2);
        QVERIFY(m_probe->waitReady());
        QVERIFY(m_probe->waitFailed());
        QTEST(m_player->itemError(), "text");
        QCOMPARE(m_probe->ends, 0);
        const double stoppedAt = m_player->currentTime();
        QVERIFY2(stoppedAt > 2 && stoppedAt < 6, qPrintable(QString::number(stoppedAt)));

        // Loaded again once the server is well, it goes on there.
        m_player->disconnect(&server);
        serveFilm(server, clip("counted.mp4"));
        play(server, 4);
        QVERIFY(m_probe->waitReady());
        QVERIFY(m_probe->seek(stoppedAt));
        QVERIFY(m_probe->waitEnd());
    }

    void goesOnAtAnotherNode_data()
    {
        const auto row = columns<int, bool>("status", "same");
        row("that is a second younger", 503, true);
        row("after the first one forgot the film", 404, true);
        row("with another film", 503, false);
    }

    void goesOnAtAnotherNode()
    {
        QFETCH(int, status);
        QFETCH(bool, same);
        const QByteArray body = clip("heavy.mov");
        HttpService server;
        const auto date = [](int second) {
            const auto text = "Wed, 01 May 2024 00:00:0" + QByteArray::number(second) + " GMT";
            return HttpService::Headers{{"Last-Modified", text}};
        };
        server.serve(
            "/one.mov",
            {.body = body, .headers = date(1), .ranges = true, .silentAfter = body.size() / 3});
        server.redirect(path, "/one.mov", 302);
        play(server);
        QVERIFY(m_probe->waitTime(0.5));
        server.serve("/one.mov", {.status = status});
        server.serve("/two.mov",
                     {.body = same ? body : body + 'x', .headers = date(2), .ranges = true});
        server.redirect(path, "/two.mov", 302);
        m_player->seek(45);
        QVERIFY(same ? m_probe->waitTime(45.5) : m_probe->waitFailed());
        QCOMPARE(m_player->itemError(),
                 same ? QString() : QStringLiteral("The film was changed on the server."));
    }

    void seekWhileOpening_data()
    {
        const auto row = columns<double, QList<double>>("start", "seeks");
        row("becomes the start", 0.0, {7});
        row("the last one does", 0.0, {3, 9, 7});
        row("in place of where it was resumed", 4.0, {7});
    }

    void seekWhileOpening()
    {
        QFETCH(double, start);
        QFETCH(QList<double>, seeks);
        HttpService server;
        serveFilm(server, clip("counted.mp4")).delay = 1s;
        m_player->load(server.url(path), start);
        m_player->play();
        QTRY_COMPARE(server.requests().size(), 1);
        QList<bool> outcomes;
        for (const double target : seeks)
            m_player->seek(target, [&](bool finished) { outcomes.append(finished); });
        QCOMPARE(m_player->currentTime(), 7);
        QVERIFY(m_probe->waitTime(8));
        QVERIFY2(m_probe->ticks.first() >= 7 && m_probe->ticks.first() < 7.6,
                 qPrintable(QString::number(m_probe->ticks.first())));
        QCOMPARE(outcomes.last(), true);
        QCOMPARE(outcomes.count(false), seeks.size() - 1);
    }

    void seeksWhereNoRangesAreServed()
    {
        HttpService server;
        serveFilm(server, clip("heavy.mov")).ranges = false;
        server.at(path).bytesPerSecond = 2'000'000;
        m_player->load(server.url(path), 15);
        m_player->play();
        QVERIFY(m_probe->waitTime(15.5));
        for (const double target : {45.0, 5.0}) {
            QVERIFY(m_probe->seek(target));
            QVERIFY2(qAbs(m_player->currentTime() - target) < 0.5,
                     qPrintable(QString::number(m_player->currentTime())));
        }
        QVERIFY2(m_probe->ticks.first() < 15.5 && m_probe->ends == 0, "it went to the film's end");
    }

    void loadsAndEndsWhileTheServerIsSilent()
    {
        HttpService silent;
        serveFilm(silent, clip("counted.mp4")).silent = true;
        HttpService well;
        serveFilm(well, clip("short.mp4"));
        play(silent);
        QTRY_COMPARE(silent.requests().size(), 1);
        QElapsedTimer timer;
        timer.start();
        play(well);
        QVERIFY(m_probe->waitPlaying());
        QVERIFY(qAbs(m_player->duration() - 2) < 0.1);
        play(silent);
        QTRY_COMPARE(silent.requests().size(), 2);
        m_player.reset();
        QVERIFY2(timer.elapsed() < 5'000, "the silent server held up the engine");
    }
};

QTEST_GUILESS_MAIN(tst_MpvNetwork)
#include "tst_mpvnetwork.moc"
