// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/http/CurlFetch.h"
#include "testlib/Table.h"

#include <QTest>

#include <mutex>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

constexpr const char *path = "/film.mp4";

/// Takes everything, up to a limit past which it puts the rest off. May insist on a part.
class Receiver : public FetchReceiver
{
public:
    explicit Receiver(qint64 most = 1LL << 40, bool onlyParts = false)
        : m_most(most)
        , m_onlyParts(onlyParts)
    {}

    qint64 received() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_received;
    }
    std::optional<FetchEnd> end() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_end;
    }
    void takeAll()
    {
        const std::scoped_lock lock(m_mutex);
        m_most = 1LL << 40;
    }
    std::chrono::milliseconds heldFor() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_heldFor;
    }
    int ends() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_ends;
    }

private:
    void heldBack(std::chrono::milliseconds left) override
    {
        const std::scoped_lock lock(m_mutex);
        m_heldFor = left;
    }
    bool headArrived(const FetchHead &head) override { return !m_onlyParts || head.status == 206; }
    Take bytesArrived(const char *, qint64 count) override
    {
        const std::scoped_lock lock(m_mutex);
        if (m_received + count > m_most)
            return Take::Later;
        m_received += count;
        return Take::More;
    }
    void ended(const FetchEnd &end) override
    {
        const std::scoped_lock lock(m_mutex);
        m_end = end;
        ++m_ends;
    }

    mutable std::mutex m_mutex;
    qint64 m_most;
    const bool m_onlyParts;
    std::chrono::milliseconds m_heldFor{0};
    qint64 m_received = 0;
    int m_ends = 0;
    std::optional<FetchEnd> m_end;
};

QByteArray pathOf(int number)
{
    return "/film-" + QByteArray::number(number) + ".mp4";
}

} // namespace

/// What libcurl is made to do, and who waits for whom.
class tst_Fetch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostileAnswers_data()
    {
        const auto row = columns<HttpService::Answer, QString>("answer", "text");
        const char *early = "The connection ended before the file did.";
        const char *senseless = "The server's answer cannot be understood.";
        row("head of a megabyte", {.headers = {{"X-Long", QByteArray(1'000'000, 'x')}}}, senseless);
        row("many headers", {.headers = HttpService::Headers(20'000, {"X-Many", "of them"})},
            senseless);
        row("shorter than it says", {.body = "film", .cutAfter = 2}, early);
        row("two lengths", {.body = "film", .headers = {{"Content-Length", "2000"}}, .close = true},
            early);
        row("chunks that are none",
            {.body = "film", .headers = {{"Transfer-Encoding", "chunked"}}, .close = true}, early);
        row("to a file", {.status = 302, .headers = {{"Location", "file:///etc/hostname"}}},
            "The server redirects to an address that is not safe.");
        row("to itself", {.status = 302, .headers = {{"Location", path}}},
            "The server redirects without end.");
    }

    void hostileAnswers()
    {
        QFETCH(HttpService::Answer, answer);
        HttpService server;
        server.serve(path, answer);
        CurlFetch fetch;
        const auto receiver = std::make_shared<Receiver>();
        fetch.start({.url = server.url(path)}, receiver);
        QTRY_VERIFY(receiver->end());
        QVERIFY(receiver->end()->error);
        QTEST(receiver->end()->error->text, "text");
        QTRY_COMPARE(server.openRequests(), 0);
    }

    /// The body of an error is no film, however long it is.
    void errorWithoutEnd()
    {
        HttpService server;
        server.serve(path, {.body = QByteArray(10'000'000, 'x'), .status = 404});
        CurlFetch fetch;
        const auto receiver = std::make_shared<Receiver>();
        fetch.start({.url = server.url(path)}, receiver);
        QTRY_VERIFY(receiver->end());
        QVERIFY(!receiver->end()->error);
        QCOMPARE(receiver->end()->head->status, 404);
        QCOMPARE(receiver->received(), 0);
    }

    void filmsGoFirst()
    {
        HttpService server;
        CurlFetch fetch;
        std::vector<std::shared_ptr<Receiver>> receivers;
        const auto start = [&](FetchUrgency urgency) {
            const int number = int(receivers.size());
            server.serve(pathOf(number), {.body = "film", .silent = number < 6});
            receivers.push_back(std::make_shared<Receiver>());
            return fetch.start({.url = server.url(pathOf(number)), .urgency = urgency},
                               receivers.back());
        };
        const FetchId first = start(FetchUrgency::Download);
        for (int i = 1; i < 6; ++i)
            start(FetchUrgency::Download);
        QTRY_COMPARE(server.requests().size(), 6);
        start(FetchUrgency::Download);
        start(FetchUrgency::Film);
        fetch.cancel(first);
        QTRY_VERIFY(receivers[6]->end());
        QCOMPARE(server.requests().size(), 8);
        QCOMPARE(server.requests()[6].target, pathOf(7));
    }

    /// Six at a host at most, counted where they are answered: who redirects is free at once.
    void countsWhereItIsAnswered()
    {
        HttpService asked;
        HttpService node("127.0.0.2");
        CurlFetch fetch;
        QHash<QByteArray, FetchId> downloads;
        for (int i = 0; i < 8; ++i) {
            node.serve(pathOf(i), {.silent = true});
            asked.redirect(pathOf(i), node.url(pathOf(i)).toEncoded(), 302);
            downloads[pathOf(i)] =
                fetch.start({.url = asked.url(pathOf(i))}, std::make_shared<Receiver>());
        }
        QTRY_COMPARE(asked.requests().size(), 8);
        QTRY_COMPARE(node.requests().size(), 6);
        node.serve(path, {.body = "film"});
        const auto film = std::make_shared<Receiver>();
        fetch.start({.url = node.url(path), .urgency = FetchUrgency::Film}, film);
        fetch.cancel(downloads.value(node.requests().first().target));
        QTRY_VERIFY(film->end());
        QTRY_COMPARE(node.requests().size(), 8);
        QCOMPARE(node.requests()[6].target, path);
        QCOMPARE(node.openRequests(), 6);
    }

    void secured()
    {
        const auto certificate = LoopbackCertificate::make();
        HttpService server("127.0.0.1", certificate);
        HttpService plain;
        server.serve(path, {.body = "film"});
        plain.serve(path, {.body = "film"});
        server.redirect("/down", plain.url(path).toEncoded(), 302);
        CurlFetch trusting(certificate.pem);
        CurlFetch strict;
        const auto end = [&](CurlFetch &fetch, const QUrl &url) {
            const auto receiver = std::make_shared<Receiver>();
            fetch.start({.url = url}, receiver);
            if (!QTest::qWaitFor([&] { return receiver->end().has_value(); }))
                return QString("no end");
            return receiver->end()->error ? receiver->end()->error->text : QString();
        };
        QCOMPARE(end(trusting, server.url(path)), "");
        QCOMPARE(end(strict, server.url(path)),
                 "The connection to the server could not be secured.");
        QCOMPARE(end(trusting, server.url("/down")),
                 "The server redirects to an address that is not safe.");
        QCOMPARE(plain.requests().size(), 0);
    }

    /// A connection that is opened ahead is the one that is used; it is opened again once.
    void connectsAhead()
    {
        HttpService server;
        server.serve(path, {.body = "film"});
        CurlFetch fetch;
        const auto opened = [&] {
            return server.count([](const auto &request) { return request.method == "HEAD"; });
        };
        const auto connectionOfNext = [&] {
            const auto receiver = std::make_shared<Receiver>();
            fetch.start({.url = server.url(path)}, receiver);
            return QTest::qWaitFor([&] { return receiver->end().has_value(); })
                       ? server.requests().last().connection
                       : 0;
        };
        fetch.connectAhead(server.url(path));
        fetch.connectAhead(server.url("/other.mp4"));
        QTRY_COMPARE(server.openRequests(), 0);
        QTRY_COMPARE(opened(), 1);
        fetch.connectAhead(server.url(path));
        QCOMPARE(connectionOfNext(), 1);
        QCOMPARE(opened(), 1);

        server.closeIdle(); // of one that was used: nobody opens it again
        QCOMPARE(connectionOfNext(), 2);
        server.closeIdle();
        QTRY_COMPARE(server.openConnections(), 0);
        fetch.connectAhead(server.url(path));
        QTRY_COMPARE(opened(), 2);
        QTRY_COMPARE(server.openRequests(), 0);
        server.closeIdle();
        QTRY_COMPARE(opened(), 3);
        QTRY_COMPARE(server.openRequests(), 0);
        server.closeIdle();
        QCOMPARE(connectionOfNext(), 5);
        QCOMPARE(opened(), 3);
    }

    /// A server that sends the whole film in place of its part is stopped before it has.
    void stopsWhatIsNotWanted()
    {
        HttpService server;
        server.serve(path, {.source = HttpService::Answer::Source::pattern(1LL << 30)});
        CurlFetch fetch;
        const auto receiver = std::make_shared<Receiver>(1LL << 40, true);
        server.redirect("/asked.mp4", path, 302);
        fetch.start({.url = server.url("/asked.mp4"), .range = FetchRange{10, 19}}, receiver);
        QTRY_VERIFY(receiver->end());
        QCOMPARE(receiver->end()->head->url, server.url(path));
        QCOMPARE(receiver->end()->head->status, 200);
        QCOMPARE(receiver->received(), 0);
        QTRY_COMPARE(server.openConnections(), 0);
        QVERIFY(server.bytesSent() < 64LL * 1024 * 1024);
    }

    /// The film's own second is the clock.
    void yieldsToFilm()
    {
        HttpService server;
        server.serve(path, {.source = HttpService::Answer::Source::pattern(1LL << 30)});
        server.serve("/short.mp4", {.body = QByteArray(200'000, 'f'), .bytesPerSecond = 100'000});
        CurlFetch fetch;
        const auto download = std::make_shared<Receiver>();
        fetch.start({.url = server.url(path), .silenceLimit = 700ms}, download);
        QTRY_VERIFY(download->received() > 10'000'000);
        fetch.favourFilm(true);
        QTest::qWait(50); // it is told on another thread
        const qint64 before = download->received();
        const auto film = std::make_shared<Receiver>();
        fetch.start({.url = server.url("/short.mp4"), .urgency = FetchUrgency::Film}, film);
        QTRY_VERIFY(film->end());
        const qint64 meanwhile = download->received() - before;
        QVERIFY2(meanwhile > 0 && meanwhile < 400'000, qPrintable(QString::number(meanwhile)));
        QVERIFY(!download->end());
        fetch.favourFilm(false);
        QTRY_VERIFY_WITH_TIMEOUT(download->end(), 30'000);
        QCOMPARE(download->received(), 1LL << 30);
    }

    /// A server that asks for it is left alone, also by those that come later.
    void leavesAlone()
    {
        HttpService server;
        server.serve(path, {.status = 429, .headers = {{"Retry-After", "2"}}});
        CurlFetch fetch;
        const auto refused = std::make_shared<Receiver>();
        fetch.start({.url = server.url(path)}, refused);
        QTRY_VERIFY(refused->end());
        QCOMPARE(refused->end()->pause, 2s);
        server.serve(path, {.body = "film"});
        QElapsedTimer waited;
        waited.start();
        const auto next = std::make_shared<Receiver>();
        fetch.start({.url = server.url(path)}, next);
        QTRY_VERIFY(next->end());
        QVERIFY(waited.elapsed() > 1500);
        QVERIFY(next->heldFor() > 1500ms && next->heldFor() <= 2s);
        QCOMPARE(next->received(), 4);
    }

    void putsOff()
    {
        HttpService server;
        server.serve(path, {.body = QByteArray(40'000'000, 'x')});
        CurlFetch fetch;
        const auto receiver = std::make_shared<Receiver>(1'000'000);
        const auto id = fetch.start({.url = server.url(path), .silenceLimit = 100ms}, receiver);
        QTRY_VERIFY(receiver->received() > 900'000);
        QTest::qWait(300); // longer than a server may be silent: it is we who wait
        QVERIFY(!receiver->end());
        QVERIFY(receiver->received() <= 1'000'000);
        receiver->takeAll();
        fetch.resume(id);
        QTRY_VERIFY(receiver->end());
        QCOMPARE(receiver->received(), 40'000'000);
    }

    void endsOnce()
    {
        HttpService server;
        server.serve(path, {.body = "film", .silent = true});
        const auto under = std::make_shared<Receiver>();
        const auto cancelled = std::make_shared<Receiver>();
        {
            CurlFetch fetch;
            fetch.start({.url = server.url(path)}, under);
            const auto id = fetch.start({.url = server.url(path)}, cancelled);
            QTRY_COMPARE(server.requests().size(), 2);
            fetch.cancel(id);
            fetch.cancel(id);
            QTRY_VERIFY(cancelled->end());
        }
        for (const auto &receiver : {under, cancelled}) {
            QCOMPARE(receiver->ends(), 1);
            QCOMPARE(receiver->end()->error->kind, ErrorKind::Cancelled);
        }
    }

    void pausesGrow()
    {
        HostBudget budget;
        HostBudget::Clock::time_point now{};
        for (const int seconds : {1, 2, 4, 8, 16, 32, 60, 60}) {
            const auto pause = budget.refused("host", {}, now);
            QVERIFY2(pause >= seconds * 800ms && pause <= seconds * 1200ms,
                     qPrintable(QString::number(pause.count())));
            QVERIFY(!budget.mayStart("host", FetchUrgency::Film, now + pause - 1ms));
            now += pause;
            QVERIFY(budget.mayStart("host", FetchUrgency::Film, now));
        }
        budget.answered("host");
        QVERIFY(budget.refused("host", {}, now) <= 1200ms);
    }
};

QTEST_GUILESS_MAIN(tst_Fetch)
#include "tst_fetch.moc"
