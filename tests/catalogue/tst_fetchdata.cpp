// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/FetchData.h"
#include "loopback/HttpService.h"
#include "platform/http/HttpClient.h"
#include "platform/http/ServiceHosts.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

using namespace std::chrono_literals;
using namespace tavelo;

namespace {

Result<QByteArray> fetched(const QUrl &url, std::chrono::milliseconds timeout = 30s,
                           std::stop_token stop = {})
{
    return awaited(fetchData(url, timeout, std::move(stop)));
}

/// Sockets of this process that send small writes to that port at once.
int promptOnes(quint16 port)
{
    int count = 0;
    for (int socket = 0; socket < 512; ++socket) {
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        int isPrompt = 0;
        socklen_t flagSize = sizeof isPrompt;
        count += ::getpeername(socket, reinterpret_cast<sockaddr *>(&peer), &size) == 0 &&
                 peer.sin_family == AF_INET && ntohs(peer.sin_port) == port &&
                 ::getsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &isPrompt, &flagSize) == 0 &&
                 isPrompt != 0;
    }
    return count;
}

QCoro::Task<> note(QString name, QUrl url, std::stop_token stop, QStringList *ended)
{
    co_await fetchData(url, 30s, stop);
    ended->append(name);
}

} // namespace

class TestFetchData : public QObject
{
    Q_OBJECT

private:
    HttpService m_server;

private Q_SLOTS:
    void cleanup()
    {
        QTRY_COMPARE(m_server.openRequests(), 0);
        // Requests are deleted later, and the last test has no later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_server.setListening(true);
        m_server.forgetRequests();
    }

    void status_data()
    {
        columns<int, bool>("status", "good");
        for (const int status : {200, 206, 299})
            QTest::addRow("%d", status) << status << true;
        for (const int status : {300, 304, 404, 500, 503, 599})
            QTest::addRow("%d", status) << status << false;
    }
    void status()
    {
        QFETCH(int, status);
        QFETCH(bool, good);
        m_server.serve("/x", {.body = status == 304 ? "" : "body", .status = status});
        const auto result = fetched(m_server.url("/x"));
        QCOMPARE(bool(result), good);
        if (good)
            QCOMPARE(*result, "body");
        else
            QCOMPARE(result.error(),
                     (Error{ErrorKind::Http, QString("HTTP %1").arg(status), status}));
    }

    void emptyBodyIsNoError()
    {
        m_server.serve("/x", {});
        const auto result = fetched(m_server.url("/x"));
        QVERIFY(result);
        QCOMPARE(*result, "");
    }

    void redirectIsFollowedUnderOneName()
    {
        m_server.serve("/end", {.body = "end"});
        m_server.redirect("/x", "/end");
        const auto result = fetched(m_server.url("/x"));
        QVERIFY(result);
        QCOMPARE(*result, "end");
        QCOMPARE(m_server.requests().size(), 2);
        for (const auto &request : m_server.requests()) {
            QCOMPARE(request.method, "GET");
            QCOMPARE(request.headers.value("user-agent"), "TaveloApp/1.0 (macOS)");
        }
    }

    void redirectThatIsNotFollowed_data()
    {
        const auto row = columns<QByteArray, QString>("location", "text");
        const QString outOfTheWeb = "The server redirects to an address that is not on the web.";
        row("a file", "file:///etc/hostname", outOfTheWeb);
        row("a magnet link", "magnet:?xt=urn:btih:0", outOfTheWeb);
        row("no host", "http:///x", outOfTheWeb);
        row("to itself", "/x", "The server redirects too often.");
        row("to nowhere", "", "HTTP 302");
    }
    void redirectThatIsNotFollowed()
    {
        QFETCH(QByteArray, location);
        m_server.redirect("/x", location, 302);
        const auto result = fetched(m_server.url("/x"));
        QVERIFY(!result);
        QTEST(result.error().text, "text");
    }

    void nothingButTheWeb_data()
    {
        const auto row = columns<QString>("address");
        row("a file", "file:///etc/hostname");
        row("a file by capitals", "FILE:///etc/hostname");
        row("a file without a scheme", "/etc/hostname");
        row("one of ours", "qrc:/qt-project.org/");
        row("data", "data:text/plain,here");
        row("another service", "ftp://127.0.0.1/x");
        row("no host", "http:///etc/hostname");
        row("nothing", "");
    }
    void nothingButTheWeb()
    {
        QFETCH(QString, address);
        const auto result = fetched(QUrl(address));
        QVERIFY(!result);
        QCOMPARE(result.error(), (Error{ErrorKind::BadUrl, "This is not a web address."}));
    }

    void pipeDoesNotStopTheNetwork()
    {
        const QTemporaryDir folder;
        const QByteArray pipe = QFile::encodeName(folder.filePath("pipe.torrent"));
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        // Whoever waits for a writer goes on, so that a failure does not hang the test.
        const auto writer = qScopeGuard([&] {
            const int descriptor = ::open(pipe.constData(), O_WRONLY | O_NONBLOCK);
            if (descriptor >= 0)
                ::close(descriptor);
        });
        m_server.serve("/x", {.body = "quick"});
        QStringList ended;
        const auto local = note("pipe", QUrl::fromLocalFile(QFile::decodeName(pipe)), {}, &ended);
        const auto remote = note("web", m_server.url("/x"), {}, &ended);
        QTRY_COMPARE_WITH_TIMEOUT(ended, QStringList({"pipe", "web"}), 3000);
    }

    void refusedUntilTheServiceIsBack()
    {
        m_server.serve("/x", {.body = "back"});
        m_server.setListening(false);
        const auto refused = fetched(m_server.url("/x"));
        QVERIFY(!refused);
        QCOMPARE(refused.error().kind, ErrorKind::Transport);
        QVERIFY(!refused.error().text.isEmpty());
        m_server.setListening(true);
        QVERIFY(fetched(m_server.url("/x")));
    }

    void connectionEndsInTheMiddle_data()
    {
        const auto row = columns<bool, qint64>("reset", "bytes");
        row("end before the body", false, qint64(0));
        row("end in the body", false, qint64(70'000));
        row("reset in the body", true, qint64(70'000));
    }
    void connectionEndsInTheMiddle()
    {
        QFETCH(bool, reset);
        QFETCH(qint64, bytes);
        m_server.serve("/x", {.body = QByteArray(100'000, 'x'), .cutAfter = bytes, .reset = reset});
        const auto result = fetched(m_server.url("/x"));
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Transport);
    }

    void timeout_data()
    {
        const auto row = columns<HttpService::Answer>("answer");
        const QByteArray body(100'000, 'x');
        row("no answer", HttpService::Answer{.silent = true});
        row("no end", HttpService::Answer{.body = body, .silentAfter = 50'000});
    }
    void timeout()
    {
        QFETCH(HttpService::Answer, answer);
        m_server.serve("/x", answer);
        const auto result = fetched(m_server.url("/x"), 300ms);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::TimedOut);
    }

    /// Not the whole is limited but the silence.
    void slowAnswerIsAnAnswer()
    {
        m_server.serve("/x",
                       {.body = QByteArray(50'000, 'x'), .delay = 300ms, .bytesPerSecond = 50'000});
        QVERIFY(fetched(m_server.url("/x"), 600ms));
    }

    /// The connection that is opened ahead carries the first request.
    void connectedAhead_data()
    {
        const auto row = columns<bool>("secure");
        row("http", false);
        row("https", true);
    }
    void connectedAhead()
    {
        QFETCH(bool, secure);
        const auto certificate = LoopbackCertificate::make();
        ServiceHosts hosts;
        hosts.certificates = certificate.pem;
        ServiceHosts::replace(hosts);
        HttpService server("127.0.0.1", secure ? std::optional(certificate) : std::nullopt);
        server.serve("/x", {.body = "first"});
        HttpClient client;
        client.connectAhead(server.url("/"));
        QTRY_COMPARE(server.openConnections(), 1);
        QTRY_COMPARE(promptOnes(quint16(server.url("/").port())), 1);
        QVERIFY(awaited(fetchData(server.url("/x"), 30s, {}, client)));
        QCOMPARE(server.requests().size(), 1);
        QCOMPARE(server.requests().first().connection, 1);
        QCOMPARE(server.openConnections(), 1);
        ServiceHosts::replace({});
    }

    void bodyHasABound()
    {
        m_server.serve("/x", {.body = QByteArray(HttpClient::maxBodyBytes + 1024 * 1024, 'x')});
        const auto result = fetched(m_server.url("/x"), 120s);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::TooLarge);
        QTRY_COMPARE(m_server.openRequests(), 0);
        m_server.serve("/x", {});
    }

    void stopEndsTheRequest_data()
    {
        const auto row = columns<bool>("fromAnotherThread");
        row("here", false);
        row("another thread", true);
    }
    void stopEndsTheRequest()
    {
        QFETCH(bool, fromAnotherThread);
        m_server.serve("/x", {.silent = true});
        std::stop_source source;
        auto task = fetchData(m_server.url("/x"), 60s, source.get_token());
        QTRY_COMPARE(m_server.requests().size(), 1);
        if (fromAnotherThread)
            std::thread([&source] { source.request_stop(); }).join();
        else
            source.request_stop();
        const auto result = awaited(std::move(task));
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    }

    void stopBeforeTheStart()
    {
        std::stop_source source;
        source.request_stop();
        m_server.serve("/x", {.silent = true});
        const auto result = fetched(m_server.url("/x"), 60s, source.get_token());
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    }

    void requestsDoNotWaitForEachOther()
    {
        m_server.serve("/slow", {.silent = true});
        m_server.serve("/quick", {.body = "quick"});
        QStringList ended;
        std::stop_source source;
        const auto slow = note("slow", m_server.url("/slow"), source.get_token(), &ended);
        const auto quick = note("quick", m_server.url("/quick"), {}, &ended);
        QTRY_COMPARE(ended, QStringList{"quick"});
        source.request_stop();
        QTRY_COMPARE(ended.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestFetchData)
#include "tst_fetchdata.moc"
