// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "catalogue/FetchData.h"
#include "catalogue/OrvellaProvider.h"
#include "catalogue/ServiceHosts.h"
#include "platform/HttpClient.h"
#include "testlib/Awaited.h"

#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTest>

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
        QByteArray contentRange;
        QByteArray etag;
        QNetworkReply::NetworkError error = QNetworkReply::NoError;
    };

    Answer get(const QUrl &url, const QList<std::pair<QByteArray, QByteArray>> &headers = {})
    {
        QNetworkRequest request(url);
        for (const auto &[name, value] : headers)
            request.setRawHeader(name, value);
        const std::unique_ptr<QNetworkReply> reply(m_network.get(request));
        if (!QTest::qWaitFor([&] { return reply->isFinished(); }, 10'000))
            return {};
        return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
                reply->readAll(), reply->rawHeader("Content-Range"), reply->rawHeader("ETag"),
                reply->error()};
    }

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
                const Answer answer = get(file.url);
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
        QTest::addColumn<QByteArray>("range");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("inside") << QByteArray("bytes=3-6") << 206 << QByteArray("3456");
        QTest::newRow("open") << QByteArray("bytes=99997-") << 206 << QByteArray("789");
        QTest::newRow("last") << QByteArray("bytes=-2") << 206 << QByteArray("89");
        QTest::newRow("past the end") << QByteArray("bytes=99999-200000") << 206 << QByteArray("9");
        QTest::newRow("behind the end") << QByteArray("bytes=100000-") << 416 << QByteArray();
        QTest::newRow("nonsense") << QByteArray("bytes=-") << 416 << QByteArray();
    }

    void ranges()
    {
        QFETCH(QByteArray, range);
        const QUrl url(m_services.baseUrl() + "/download/neon_alibi/neon_alibi.mp4");
        const Answer part = get(url, {{"Range", range}});
        QTEST(part.status, "status");
        QTEST(part.body, "body");
        if (part.status == 206)
            QVERIFY(part.contentRange.endsWith("/100000"));
        QCOMPARE(get(url, {{"Range", range}, {"If-Range", "\"another\""}}).body.size(), 100'000);
    }

    void faults()
    {
        const QUrl film(m_services.baseUrl() + "/download/neon_alibi/neon_alibi.mp4");
        const QUrl page(m_services.baseUrl() + "/details/neon_alibi");
        m_services.setFaults({.below = "/download/", .status = 503});
        QCOMPARE(get(film).status, 503);
        QCOMPARE(get(page).status, 200);
        m_services.setFaults({.below = "/download/", .dropAfter = 1000});
        const Answer cut = get(film);
        QVERIFY(cut.error != QNetworkReply::NoError);
        QVERIFY(cut.body.size() <= 1000);
        m_services.setFaults({.silent = true});
        const auto silence = awaited(fetchData(page, 300ms));
        QVERIFY(!silence);
        QCOMPARE(silence.error().kind, ErrorKind::TimedOut);
        m_services.setFaults({});
        QCOMPARE(get(page).status, 200);
    }
};

QTEST_GUILESS_MAIN(tst_DemoServer)
#include "tst_demoserver.moc"
