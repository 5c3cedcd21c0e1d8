// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "RawClient.h"
#include "loopback/HttpServiceThread.h"
#include "testlib/Table.h"

#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

namespace {

using Answer = HttpAnswer;
using End = RawClient::End;
using Framing = HttpAnswer::Framing;

const QByteArray film = QByteArray("0123456789").repeated(10);
constexpr qint64 gigabytes = 5'000'000'000;

} // namespace

Q_DECLARE_METATYPE(RawClient::End)

class tst_HttpService : public QObject
{
    Q_OBJECT

private:
    HttpServiceThread m_thread;
    HttpService &m_service = m_thread.add();

    void serve(const Answer &answer)
    {
        m_thread.run([&] {
            m_service.serve("/film", answer);
            m_service.serve("/next", {.body = "next"});
        });
    }

    /// Two requests in one packet; the second is answered only where the first left a connection.
    End ask(const QByteArray &header, QByteArray &head, QByteArray &rest)
    {
        const RawClient client(m_service.url("/").port());
        if (!client.isConnected())
            return End::Reset;
        client.send("GET /film HTTP/1.1\r\nHost: loopback\r\n" + header +
                    (header.isEmpty() ? "" : "\r\n") +
                    "\r\nGET /next HTTP/1.1\r\nConnection: close\r\n\r\n");
        QByteArray received;
        const End end = client.receive(received);
        const qsizetype bodyAt = received.indexOf("\r\n\r\n") + 4;
        head = received.first(bodyAt);
        rest = received.sliced(bodyAt);
        return end;
    }

private Q_SLOTS:
    void exactToTheByte_data()
    {
        const auto row = columns<Answer, QByteArray, QByteArray, QByteArray, End, bool>(
            "answer", "asked", "told", "body", "end", "kept");
        const Answer ranged{.body = film, .ranges = true};
        const auto range = [&](const char *name, const QByteArray &asked, const QByteArray &told,
                               const QByteArray &body) {
            row(name, ranged, "Range: bytes=" + asked, told, body, End::Closed, true);
        };
        range("range inside", "3-6", "Content-Range: bytes 3-6/100", "3456");
        range("range open", "97-", "Content-Range: bytes 97-99/100", "789");
        range("range last", "-2", "Content-Range: bytes 98-99/100", "89");
        range("range past the end", "99-200", "Content-Length: 1\r\n", "9");
        range("range behind the end", "100-", "416 ", "");
        range("range of nothing", "-0", "Content-Range: bytes */100", "");
        range("range without numbers", "-", " 200 ", film);
        range("range backwards", "6-3", " 200 ", film);
        range("several ranges", "0-1,5-6", " 200 ", film);

        const auto whole = [&](const char *name, const Answer &answer, const QByteArray &asked,
                               const QByteArray &told, const QByteArray &body) {
            row(name, answer, asked, told, body, End::Closed, true);
        };
        whole("whole", {.body = film}, {}, "Content-Length: 100\r\n", film);
        whole("whole to a range", {.body = film}, "Range: bytes=3-6", " 200 ", film);
        whole("known", {.body = film, .etag = "\"1\""}, "If-None-Match: \"1\"", " 304 ", "");
        whole("other version", {.body = film, .etag = "\"2\"", .ranges = true},
              "Range: bytes=3-6\r\nIf-Range: \"1\"", "ETag: \"2\"", film);
        whole("lie about the range",
              {.body = film, .ranges = true, .contentRange = "bytes 4-7/1000"}, "Range: bytes=3-6",
              "Content-Range: bytes 4-7/1000\r\n", "3456");
        whole("chunked", {.body = film, .framing = Framing::Chunked}, {}, "chunked",
              "64\r\n" + film + "\r\n0\r\n\r\n");
        whole("made on a pool thread", {.slowBody = [] { return film; }}, {}, "", film);
        const auto pattern = Answer::Source::pattern(gigabytes);
        whole("far into gigabytes", {.ranges = true, .source = pattern},
              "Range: bytes=4999999000-4999999999", "/5000000000\r\n",
              pattern.bytes(4'999'999'000, 1000));
        whole("range before the cut", {.body = film, .ranges = true, .cutAfter = 7},
              "Range: bytes=0-3", " 206 ", "0123");
        whole("range before the silence", {.body = film, .ranges = true, .silentAfter = 7},
              "Range: bytes=0-6", " 206 ", "0123456");

        const auto ends = [&](const char *name, const Answer &answer, const QByteArray &asked,
                              const QByteArray &body,
                              End end) { row(name, answer, asked, "", body, end, false); };
        ends("cut", {.body = film, .cutAfter = 7}, {}, "0123456", End::Closed);
        ends("cut in a range", {.body = film, .ranges = true, .cutAfter = 7}, "Range: bytes=3-",
             "3456", End::Closed);
        ends("range behind the cut", {.body = film, .ranges = true, .cutAfter = 7},
             "Range: bytes=50-", "", End::Closed);
        ends("cut in a chunk", {.body = film, .framing = Framing::Chunked, .cutAfter = 7}, {},
             "8\r\n0123456", End::Closed);
        ends("reset", {.body = film, .cutAfter = 7, .reset = true}, {}, "0123456", End::Reset);
        ends("silence in the body", {.body = film, .silentAfter = 7}, {}, "0123456", End::Silence);
        ends("silence after the head", {.body = film, .silentAfter = 0}, {}, "", End::Silence);
        ends("no last chunk", {.body = film, .framing = Framing::Chunked, .silentAfter = 100}, {},
             "64\r\n" + film + "\r\n", End::Silence);
        ends("end by closing", {.body = film, .framing = Framing::Close}, {}, film, End::Closed);
        ends("closing as announced", {.body = film, .close = true}, {}, film, End::Closed);
        ends("closing as asked", {.body = film}, "Connection: close", film, End::Closed);
    }

    void exactToTheByte()
    {
        QFETCH(Answer, answer);
        QFETCH(QByteArray, asked);
        QFETCH(QByteArray, told);
        QFETCH(QByteArray, body);
        QFETCH(bool, kept);
        serve(answer);
        QByteArray head;
        QByteArray rest;
        QTEST(ask(asked, head, rest), "end");
        QVERIFY2(head.contains(told), head);
        QCOMPARE(kept ? rest.first(std::min(body.size(), rest.size())) : rest, body);
        const QByteArray next = rest.sliced(body.size());
        QVERIFY2(!kept || (next.startsWith("HTTP/1.1 200 ") && next.endsWith("\r\n\r\nnext")),
                 rest);
    }

    void nothingAtAll()
    {
        serve({.silent = true});
        const RawClient client(m_service.url("/").port());
        client.send("GET /film HTTP/1.1\r\n\r\n");
        QByteArray received;
        QCOMPARE(client.receive(received), End::Silence);
        QCOMPARE(received, QByteArray());
        QCOMPARE(m_thread.run([&] { return m_service.openRequests(); }), 1);
    }

    void takesItsTime_data()
    {
        const auto row = columns<Answer>("answer");
        row("late", Answer{.body = film, .delay = 200ms});
        row("slow", Answer{.body = film, .bytesPerSecond = 500});
    }

    void takesItsTime()
    {
        QFETCH(Answer, answer);
        serve(answer);
        QElapsedTimer clock;
        clock.start();
        QByteArray head;
        QByteArray rest;
        QCOMPARE(ask({}, head, rest), End::Closed);
        QVERIFY2(clock.elapsed() >= 190, qPrintable(QString::number(clock.elapsed())));
    }

    /// A body larger than the memory waits for the client that takes it.
    void waitsForItsClient()
    {
        serve({.source = Answer::Source::pattern(gigabytes)});
        const RawClient client(m_service.url("/").port());
        client.send("GET /film HTTP/1.1\r\n\r\n");
        const auto sent = [this] { return m_thread.run([&] { return m_service.bytesSent(); }); };
        qint64 before = -1;
        QTRY_VERIFY(std::exchange(before, sent()) == sent() && before > 1'000'000);
        QVERIFY2(before < 32'000'000, qPrintable(QString::number(before)));
    }

    /// The service and two nodes on other hosts, of which the first fails ranges.
    void redirectsToNodes()
    {
        const auto certificate = LoopbackCertificate::make();
        HttpService service("127.0.0.1", certificate);
        HttpService failing("localhost", certificate);
        HttpService well("127.0.0.2", certificate);
        failing.serveRange("/film", {.status = 500});
        well.serveBy("/film", [](const HttpRequest &request) -> Answer {
            if (request.ordinal == 1)
                return {.status = 429, .headers = {{"Retry-After", "1"}}};
            return {.body = film, .ranges = true};
        });
        service.serveBy("/download/film", [&](const HttpRequest &request) -> Answer {
            const HttpService &node = request.ordinal == 1 ? failing : well;
            return {.status = 302, .headers = {{"Location", node.url("/film").toEncoded()}}};
        });

        QNetworkAccessManager client;
        QNetworkRequest request(service.url("/download/film"));
        QSslConfiguration trust = QSslConfiguration::defaultConfiguration();
        trust.setCaCertificates(QSslCertificate::fromData(certificate.pem));
        request.setSslConfiguration(trust);
        request.setRawHeader("Range", "bytes=3-6");
        QList<int> statuses;
        for (int i = 0; i < 3; ++i) {
            const std::unique_ptr<QNetworkReply> reply(client.get(request));
            QTRY_VERIFY(reply->isFinished());
            statuses.append(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt());
            if (i == 2)
                QCOMPARE(reply->readAll(), QByteArray("3456"));
        }
        QCOMPARE(statuses, QList<int>({500, 429, 206}));
        QCOMPARE(service.requests().last().connection, 1); // kept from the first to the third
        QCOMPARE(well.requests().last().base(), well.base());
        QVERIFY(well.requests()[1].arrival >= failing.requests()[0].arrival);
        QCOMPARE(service.count([](const auto &one) { return one.secure; }), 3);
    }
};

QTEST_GUILESS_MAIN(tst_HttpService)
#include "tst_httpservice.moc"
