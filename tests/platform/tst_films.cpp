// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/ThreadPool.h"
#include "platform/http/CurlFetch.h"
#include "platform/media/film/FilmMemory.h"
#include "platform/media/film/Films.h"
#include "platform/media/film/Mp4Index.h"
#include "testlib/Table.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrlQuery>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

constexpr qint64 KiB = 1024;
constexpr qint64 MiB = 1024 * KiB;
constexpr auto item = "/download/item/film.mp4";
constexpr auto path = "/1/items/item/film.mp4";

QByteArray clip(const char *name)
{
    QFile file(QStringLiteral(TAVELO_CLIPS "/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 firstAsked(const HttpService::Request &request)
{
    return request.headers.value("range").sliced(6).split('-').first().toLongLong();
}

bool isView(const HttpService::Request &request)
{
    return !request.target.contains("cnt=0");
}

HttpService::Answer to(const HttpService &node)
{
    return {.status = 302, .headers = {{"Location", node.url(path).toEncoded()}}};
}

/// A 600-MB film whose bytes tell where they are from.
HttpService::Answer longFilm()
{
    return {.ranges = true, .source = HttpService::Answer::Source::pattern(600 * MiB)};
}

} // namespace

/// Films as their readers get them, from a service that leads to nodes.
class TestFilms : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<HttpService> m_service;
    std::unique_ptr<HttpService> m_node;
    std::unique_ptr<HttpService> m_other;
    std::unique_ptr<CurlFetch> m_fetch;
    std::unique_ptr<Films> m_films;

    QUrl url() const { return m_service->url(item); }
    std::shared_ptr<FilmStream> open(double startAt = 0) { return m_films->open(url(), startAt); }
    qsizetype requestsAtNodes() const
    {
        return m_node->requests().size() + m_other->requests().size();
    }

    /// `count` bytes from `place` on, as a demuxer reads them; fewer where the film ends.
    static QByteArray bytesAt(const std::shared_ptr<FilmStream> &stream, qint64 place, qint64 count)
    {
        const auto reading = runOnPool([=] {
            QByteArray bytes(count, Qt::Uninitialized);
            qint64 done = 0;
            for (qint64 got = stream->seek(place) ? 1 : 0; got > 0 && done < count; done += got) {
                got = stream->read(bytes.data() + done, count - done);
                if (got <= 0)
                    break;
            }
            return bytes.first(done);
        });
        return QTest::qWaitFor([&] { return reading.isFinished(); }, 60'000) ? reading.result()
                                                                             : QByteArray();
    }
    bool holdsTrue(const std::shared_ptr<FilmStream> &stream, qint64 place)
    {
        return bytesAt(stream, place, MiB) == longFilm().source->bytes(place, MiB);
    }
    /// Nothing more is asked for.
    bool waitUntilPrepared() const
    {
        qsizetype before = -1;
        return QTest::qWaitFor(
            [&] {
                QTest::qWait(400);
                return m_node->openRequests() == 0 &&
                       std::exchange(before, requestsAtNodes()) == requestsAtNodes() && before > 0;
            },
            20'000);
    }

private Q_SLOTS:
    void init()
    {
        m_service = std::make_unique<HttpService>();
        m_node = std::make_unique<HttpService>("127.0.0.2");
        m_other = std::make_unique<HttpService>("127.0.0.3");
        m_service->serve(item, to(*m_node));
        m_node->serve(path, longFilm());
        m_other->serve(path, longFilm());
        m_fetch = std::make_unique<CurlFetch>();
        m_films = std::make_unique<Films>(*m_fetch);
    }
    void cleanup()
    {
        m_films.reset();
        m_fetch.reset();
        FilmMemory::shared().setFolder({});
    }

    void asksTheItemOnceAndThenTheNode()
    {
        const auto stream = open();
        for (const qint64 place : {0 * MiB, 400 * MiB, 100 * MiB, 599 * MiB})
            QVERIFY(holdsTrue(stream, place));
        QCOMPARE(m_service->requests().size(), 1);
        QCOMPARE(m_service->count(isView), 1);
        QVERIFY(requestsAtNodes() > 4);
        QSet<int> connections;
        for (const auto &request : m_node->requests())
            connections.insert(request.connection);
        QVERIFY2(connections.size() <= 3, qPrintable(QString::number(connections.size())));
    }

    void goesOnElsewhere_data()
    {
        const auto row = columns<HttpService::Answer, bool>("fault", "namedByTheCatalogue");
        row("the node is forbidden", {.status = 403}, false);
        row("the node forgot it", {.status = 404}, false);
        row("the node fails", {.status = 500}, false);
        row("the node fails, the service still leads there", {.status = 404}, true);
        row("the node knows no ranges any more", {.source = longFilm().source}, false);
        HttpService::Answer lying = longFilm();
        lying.contentRange = "bytes 5-70000/629145600";
        row("the node sends another part", lying, false);
        HttpService::Answer silent = longFilm();
        silent.silent = true;
        row("the node is silent", silent, false);
        HttpService::Answer broken = longFilm();
        broken.cutAfter = 400 * MiB + 100'000;
        row("the node breaks off", broken, false);
    }
    void goesOnElsewhere()
    {
        QFETCH(HttpService::Answer, fault);
        QFETCH(bool, namedByTheCatalogue);
        if (namedByTheCatalogue)
            m_films->prepare({.url = url(), .alternatives = {m_other->url(path)}});
        const auto stream = open();
        QVERIFY(holdsTrue(stream, 0));
        m_node->serve(path, fault);
        if (!namedByTheCatalogue)
            m_service->serve(item, to(*m_other));
        QVERIFY(holdsTrue(stream, 400 * MiB));
        QVERIFY(m_other->requests().size() > 0);
        QCOMPARE(m_service->count(isView), 1);
    }

    void neverTwoFilmsInOne_data()
    {
        const auto row = columns<HttpService::Answer>("other");
        row("of another size",
            {.ranges = true, .source = HttpService::Answer::Source::pattern(600 * MiB + 1)});
        row("of the same size",
            {.ranges = true, .source = HttpService::Answer::Source::pattern(600 * MiB, 7)});
    }
    void neverTwoFilmsInOne()
    {
        QFETCH(HttpService::Answer, other);
        HttpService::Answer slow = longFilm();
        slow.silentAfter = 400 * MiB + 20'000;
        m_node->serve(path, slow);
        const auto stream = open();
        QVERIFY(bytesAt(stream, 0, MiB).size() == MiB);
        // What is asked for once more begins within what has come; a part of it has, that is.
        m_other->serve(path, other);
        m_service->serve(item, to(*m_other));
        const QByteArray got = bytesAt(stream, 400 * MiB, MiB);
        QVERIFY(got.size() < MiB || got == longFilm().source->bytes(400 * MiB, MiB));
        QVERIFY(stream->isOutdated() || !stream->error().isEmpty());
    }

    /// What a server without ranges sends before anybody wants it is neither kept nor taken.
    void wholeFilmAtTheReadersPace()
    {
        m_node->serve(path, {.source = longFilm().source});
        const auto stream = open();
        QCOMPARE(bytesAt(stream, 0, MiB), longFilm().source->bytes(0, MiB));
        QTest::qWait(500);
        QVERIFY2(m_node->bytesSent() < 64 * MiB, qPrintable(QString::number(m_node->bytesSent())));
        QVERIFY(holdsTrue(stream, 90 * MiB));
        QVERIFY(holdsTrue(stream, 3 * MiB)); // by beginning anew
    }

    void preparedFilmNeedsNothingMore_data()
    {
        const auto row = columns<QByteArray, double>("film", "startAt");
        row("index first", "long.mp4", 0);
        row("index last", "short.mp4", 0);
        row("in the middle", "heavy.mov", 30);
    }
    void preparedFilmNeedsNothingMore()
    {
        QFETCH(QByteArray, film);
        QFETCH(double, startAt);
        const QByteArray body = clip(film.constData());
        m_node->serve(path, {.body = body, .etag = "\"one\"", .ranges = true});
        m_films->prepare({.url = url(), .startAt = startAt});
        QVERIFY(waitUntilPrepared());
        QCOMPARE(m_service->count(isView), 0);
        QVERIFY(m_node->bytesSent() < FilmPreparation::whole);
        // Whatever is read now is held: the service could as well be gone.
        m_service->setListening(false);
        m_node->serve(path, {.status = 500});
        const auto stream = open(startAt);
        const auto index =
            Mp4Index::parse(body.sliced(body.indexOf("moov") - 4)); // as ffmpeg writes it, once
        QVERIFY(index);
        const ByteSpan picture = index->bytesFor(startAt, startAt + 0.2);
        QCOMPARE(bytesAt(stream, 0, 32), body.first(32));
        QCOMPARE(bytesAt(stream, picture.first, picture.size()),
                 body.sliced(picture.first, picture.size()));
    }

    void hostileIndexes_data()
    {
        const auto row = columns<QByteArray>("head");
        row("of 4 GB", QByteArray::fromHex("00000010667479706d703432000000000000000 1f0000000"
                                           "6d6f6f76"));
        row("of 64 bits", QByteArray::fromHex("00000010667479706d7034320000000000000001"
                                              "6d6f6f767fffffffffffffff"));
        row("that is all of the film", QByteArray::fromHex("000000006d6f6f76"));
        row("without end", QByteArray::fromHex("00000008667265650000000866726565").repeated(4096));
    }
    void hostileIndexes()
    {
        QFETCH(QByteArray, head);
        auto source = longFilm().source;
        source->bytes = [head, rest = source->bytes](qint64 offset, qint64 count) {
            QByteArray bytes = rest(offset, count);
            for (qint64 i = offset; i < std::min<qint64>(head.size(), offset + count); ++i)
                bytes[i - offset] = head[i];
            return bytes;
        };
        m_node->serve(path, {.ranges = true, .source = source});
        m_films->prepare({.url = url()});
        QVERIFY(waitUntilPrepared());
        QVERIFY2(m_node->bytesSent() <= FilmPreparation::whole + 256 * KiB,
                 qPrintable(QString::number(m_node->bytesSent())));
    }

    void startsFromWhatWasKept_data()
    {
        const auto row = columns<QByteArray, bool>("tagNow", "isAnother");
        row("the same film", "\"one\"", false);
        row("another one", "\"two\"", true);
    }
    void startsFromWhatWasKept()
    {
        QFETCH(QByteArray, tagNow);
        QFETCH(bool, isAnother);
        const QTemporaryDir folder;
        FilmMemory::shared().setFolder(folder.path() + "/films");
        const QByteArray body = clip("heavy.mov");
        m_node->serve(path, {.body = body, .etag = "\"one\"", .ranges = true});
        {
            const auto stream = open(30);
            bytesAt(stream, 0, 32);
            QVERIFY(waitUntilPrepared());
            stream->shown(30.5);
            stream->cancel();
        }
        QTRY_VERIFY(!QDir(folder.path() + "/films").isEmpty());
        m_films = std::make_unique<Films>(*m_fetch); // as after a start of the program
        m_node->serve(path, {.body = isAnother ? body + 'x' : body,
                             .etag = tagNow,
                             .ranges = true,
                             .delay = 300ms});
        m_node->forgetRequests();
        const auto stream = open(30.5);
        QCOMPARE(bytesAt(stream, 0, 32), body.first(32)); // comes without the node
        QTRY_COMPARE(stream->isOutdated(), isAnother);
        QTRY_VERIFY(m_node->requests().size() > 0);
        for (const auto &request : m_node->requests())
            QVERIFY2(firstAsked(request) > MiB, "asked for what was kept");
    }
};

QTEST_GUILESS_MAIN(TestFilms)
#include "tst_films.moc"
