// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "catalogue/FetchData.h"
#include "catalogue/OrvellaProvider.h"
#include "platform/http/HttpClient.h"
#include "platform/http/ServiceHosts.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>

using namespace tavelo;
using namespace std::chrono_literals;

/// The demo's services, asked by the program's own clients and, where those would not, by hand.
class tst_DemoServer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_films;
    DemoServer m_services{m_films.path()};
    QNetworkAccessManager m_network;

    struct Answer
    {
        int status = 0;
        QByteArray body;
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
        QHash<QByteArray, QByteArray> headers = {};
    };

    using Headers = QList<std::pair<QByteArray, QByteArray>>;

    Answer get(const QUrl &url, const Headers &headers = {}, const QByteArray &method = "GET")
    {
        QNetworkRequest request(url);
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        const std::unique_ptr<QNetworkReply> reply(
            method == "HEAD" ? m_network.head(request)
                             : m_network.sendCustomRequest(request, method));
        if (!QTest::qWaitFor([&] { return reply->isFinished(); }, 10'000))
            return {};
        Answer answer{reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                      reply->readAll(), reply->error()};
        for (const auto &[name, value] : reply->rawHeaderPairs())
            answer.headers[name] = value;
        return answer;
    }

    QUrl film() const { return QUrl(m_services.baseUrl() + "/download/neon_alibi/neon_alibi.mp4"); }

    static QStringList ids(const Result<QList<MediaItem>> &items)
    {
        QStringList ids;
        for (const MediaItem &item : items ? *items : QList<MediaItem>())
            ids.append(item.id);
        return ids;
    }

    static ArchiveDetails detailsOf(const char *id)
    {
        const auto details = awaited(OrvellaProvider::details(QString::fromUtf8(id)));
        return details ? *details : ArchiveDetails();
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *name : {"card.mp4", "neon.mp4", "neon.jpg", "harbour.ogv"}) {
            QFile film(m_films.filePath(name));
            QVERIFY(film.open(QIODevice::WriteOnly));
            for (int i = 0; i < 100'000; ++i)
                film.write(QByteArray::number(i % 10));
        }
        QVERIFY(m_services.start());
        ServiceHosts::replace({.archive = m_services.baseUrl()});
    }

    void searches()
    {
        const auto search = [](std::optional<QString> text, std::optional<QString> extra,
                               const char *sort, int rows, int page) {
            return ids(awaited(
                OrvellaProvider::search(text, extra, QString::fromLatin1(sort), rows, page)));
        };
        const QStringList featured =
            search({}, "collection:(feature_films)", "downloads desc", 24, 1);
        QVERIFY(featured.size() >= 8);
        QCOMPARE(featured.first(), QStringLiteral("dusk_over_kestrel_ridge"));
        QVERIFY2(!featured.contains("members_only_reel"), "a restricted item was found");
        QCOMPARE(search({}, {}, "week desc", 3, 1).first(), QStringLiteral("test_card_waltz"));
        QCOMPARE(search({}, {}, "week desc", 3, 2).size(), 3);
        QVERIFY(!search({}, {}, "week desc", 3, 2).contains("test_card_waltz"));
        QCOMPARE(search("umbrella!", {}, "downloads desc", 60, 1), QStringList{"neon_alibi"});
        QCOMPARE(search("umbrella dahlias", {}, "downloads desc", 60, 1), QStringList());
    }

    void queries_data()
    {
        const auto row = columns<QString, bool>("query", "found");
        row("word", "subject:(crime)", true);
        row("part of a word", "subject:(crim)", false);
        row("any clause", "(title:(crime) OR subject:(crime))", true);
        row("words of two fields", "title:(neon AND crime)", false);
        row("other collection", "title:(neon) AND collection:(prelinger)", false);
        row("other media", "title:(neon) AND mediatype:(audio)", false);
        row("restricted", "title:(members) AND -access-restricted-item:true", false);
    }

    void queries()
    {
        QFETCH(QString, query);
        QUrlQuery items({{"q", query}, {"fl[]", "title"}, {"rows", "50"}, {"output", "json"}});
        QUrl url(m_services.baseUrl() + "/advancedsearch.php");
        url.setQuery(items);
        const QJsonObject root = QJsonDocument::fromJson(get(url).body).object();
        const QJsonArray documents = root["response"]["docs"].toArray();
        QCOMPARE(root["responseHeader"]["status"].toInt(-1), 0);
        QCOMPARE(root["response"]["numFound"].toInt(-1), documents.size());
        QTEST(!documents.isEmpty(), "found");
        for (const QJsonValue &document : documents)
            QCOMPARE(document.toObject().keys(), QStringList{"title"});
    }

    void itemsOfEveryKind()
    {
        QVERIFY(detailsOf("members_only_reel").restricted);
        QCOMPARE(detailsOf("the_lantern_makers").subtitles().size(), 3);
        QVERIFY(detailsOf("only_in_theora").playable().isEmpty());
        QCOMPARE(detailsOf("only_in_theora").otherVideos().size(), 1);
        QVERIFY(detailsOf("stills_from_a_lost_film").otherVideos().isEmpty());
        QVERIFY(detailsOf("harbour_at_low_tide").item.licenseLink().isEmpty());
        QVERIFY(!detailsOf("neon_alibi").item.licenseLink().isEmpty());
        QCOMPARE(detailsOf("test_card_waltz").item.year, std::optional<QString>("1969"));
        const auto unknown = awaited(OrvellaProvider::details("no such item"));
        QVERIFY(!unknown);
        QCOMPARE(unknown.error().text, QStringLiteral("Empty response"));
    }

    void filesOfOddNames()
    {
        for (const char *id : {"test_card_waltz", "harbour_at_low_tide"}) {
            int served = 0;
            for (const ArchiveFile &file : detailsOf(id).files) {
                const Answer answer = get(file.url());
                served += answer.status == 200 && answer.body.size() == 100'000 ? 1 : 0;
            }
            QVERIFY2(served >= 1, id);
        }
        for (const char *path : {"/download/test_card_waltz/../../../etc/passwd",
                                 "/download/test_card_waltz/%2e%2e/%2e%2e/neon.jpg",
                                 "/download/neon_alibi/card.mp4", "/services/img/..%2Fneon"})
            QCOMPARE(get(QUrl(m_services.baseUrl() + QLatin1String(path))).status, 404);
    }

    void ranges_data()
    {
        const auto row = columns<QByteArray, int, QByteArray>("range", "status", "body");
        row("inside", "bytes=3-6", 206, "3456");
        row("open", "bytes=99997-", 206, "789");
        row("last", "bytes=-2", 206, "89");
        row("past the end", "bytes=99999-200000", 206, "9");
        row("behind the end", "bytes=100000-", 416, QByteArray());
        row("nothing", "bytes=-0", 416, QByteArray());
        const QByteArray whole = QByteArray("0123456789").repeated(10'000);
        row("no numbers", "bytes=-", 200, whole);
        row("backwards", "bytes=6-3", 200, whole);
        row("several", "bytes=0-1,5-6", 200, whole);
    }

    void ranges()
    {
        QFETCH(QByteArray, range);
        const Answer part = get(film(), {{"Range", range}});
        QTEST(part.status, "status");
        QTEST(part.body, "body");
        QCOMPARE(part.headers["Content-Range"].endsWith("/100000"), part.status != 200);
        QCOMPARE(get(film(), {{"Range", range}}, "HEAD").status, 200);
    }

    void conditions()
    {
        const Answer head = get(film(), {}, "HEAD");
        QCOMPARE(head.body.size(), 0);
        QCOMPARE(head.headers["Content-Length"], QByteArray("100000"));
        const QByteArray tag = head.headers["ETag"];
        const Headers part{{"Range", "bytes=3-6"}};
        for (const QByteArray &same : {tag, head.headers["Last-Modified"]})
            QCOMPARE(get(film(), part + Headers{{"If-Range", same}}).body, QByteArray("3456"));
        QCOMPARE(get(film(), {{"If-None-Match", tag}}).status, 304);

        QFile file(m_films.filePath("neon.mp4"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-1),
                                 QFileDevice::FileModificationTime));
        QCOMPARE(get(film(), part + Headers{{"If-Range", tag}}).body.size(), 100'000);
        QCOMPARE(get(film(), {}, "POST").status, 405);
    }

    void faults()
    {
        const QUrl page(m_services.baseUrl() + "/details/neon_alibi");
        m_services.controls().setFaults({{.below = "/download/", .status = 503}, {.status = 500}});
        QCOMPARE(get(film()).status, 503);
        QCOMPARE(get(page).status, 500);
        m_services.setFaults({.below = "/download/", .dropAfter = 1000});
        const Answer cut = get(film());
        QVERIFY(cut.error != QNetworkReply::NoError);
        QVERIFY(cut.body.size() <= 1000);
        m_services.setFaults({.silent = true});
        const auto silence = awaited(fetchData(page, 300ms));
        QVERIFY(!silence);
        QCOMPARE(silence.error().kind, ErrorKind::TimedOut);
        m_services.setFaults({});
        QCOMPARE(get(page).status, 200);
    }

    void slowAnswers_data()
    {
        const auto row = columns<int, qint64>("latency", "bytesPerSecond");
        row("latency", 400, qint64(0));
        row("rate", 0, qint64(250'000));
    }

    void slowAnswers()
    {
        QFETCH(int, latency);
        QFETCH(qint64, bytesPerSecond);
        m_services.setFaults({.latency = latency, .bytesPerSecond = bytesPerSecond});
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(get(film()).body.size(), 100'000); // takes 400 ms by either
        QVERIFY2(clock.elapsed() >= 350, qPrintable(QString::number(clock.elapsed())));
        m_services.setFaults({});
    }

    void recordsRequests()
    {
        m_services.controls().forgetRequests();
        get(film(), {{"Range", "bytes=1-2"}});
        const QList<DemoRequest> requests = m_services.controls().requests();
        QCOMPARE(requests.size(), 1);
        QCOMPARE(requests.first().target, film().path().toUtf8());
        QCOMPARE(requests.first().headers.value("range"), QByteArray("bytes=1-2"));
    }

    /// Two requests in one packet, and many connections while one of them is slow.
    void manyAtOnce()
    {
        m_services.setFaults({.below = "/download/", .bytesPerSecond = 10'000});
        const std::unique_ptr<QNetworkReply> slow(m_network.get(QNetworkRequest(film())));
        QTRY_VERIFY(slow->bytesAvailable() > 0);
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        const QByteArray request = "HEAD /services/img/neon_alibi HTTP/1.1\r\nHost: demo\r\n\r\n";
        for (int i = 0; i < 40; ++i) {
            auto &client = clients.emplace_back(std::make_unique<QTcpSocket>());
            client->connectToHost("127.0.0.1", quint16(QUrl(m_services.baseUrl()).port()));
            client->write(request + request);
        }
        for (const auto &client : clients)
            QTRY_COMPARE(client->peek(4096).count("HTTP/1.1 200 OK"), 2);
        QVERIFY(!slow->isFinished());
        m_services.setFaults({});
        QTRY_VERIFY(slow->isFinished());
        QCOMPARE(slow->readAll().size(), 100'000);
    }
};

QTEST_GUILESS_MAIN(tst_DemoServer)
#include "tst_demoserver.moc"
