// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/CurlFetch.h"
#include "testlib/FaultServer.h"
#include "testlib/Table.h"

#include <QTest>

#include <mutex>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

constexpr const char *path = "/film.mp4";

/// Takes everything, up to a limit past which it puts the rest off.
class Receiver : public FetchReceiver
{
public:
    explicit Receiver(qint64 most = 1LL << 40)
        : m_most(most)
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
    int ends() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_ends;
    }

private:
    bool headArrived(const FetchHead &) override { return true; }
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
        const auto row = columns<FaultServer::Answer, QString>("answer", "text");
        const char *early = "The connection ended before the file did.";
        const char *senseless = "The server's answer cannot be understood.";
        row("head of a megabyte", {.headers = {{"X-Long", QByteArray(1'000'000, 'x')}}}, senseless);
        row("many headers", {.headers = FaultServer::Headers(20'000, {"X-Many", "of them"})},
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
        QFETCH(FaultServer::Answer, answer);
        FaultServer server;
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
        FaultServer server;
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
        FaultServer server;
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

    /// A server that asks for it is left alone, also by those that come later.
    void leavesAlone()
    {
        FaultServer server;
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
        QCOMPARE(next->received(), 4);
    }

    void putsOff()
    {
        FaultServer server;
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
        FaultServer server;
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
