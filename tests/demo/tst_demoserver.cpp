// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "catalogue/OrvellaProvider.h"
#include "platform/http/ServiceHosts.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

/// The demo's services, asked by the program's own clients and, where those would not, by hand.
class tst_DemoServer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_films;
    DemoServer m_services{m_films.path()};
    QNetworkAccessManager m_network;

    std::unique_ptr<QNetworkReply> finished(const QNetworkRequest &request)
    {
        std::unique_ptr<QNetworkReply> reply(m_network.get(request));
        return QTest::qWaitFor([&] { return reply->isFinished(); }, 10'000) ? std::move(reply)
                                                                            : nullptr;
    }

    QByteArray get(const QString &path)
    {
        return finished(QNetworkRequest(QUrl(m_services.baseUrl() + path)))->readAll();
    }

    QUrl film() const { return QUrl(m_services.baseUrl() + "/download/neon_alibi/neon_alibi.mp4"); }

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
        ServiceHosts::replace({.archive = m_services.baseUrl()});
    }

    void itemsOfEveryKind()
    {
        QVERIFY(detailsOf("members_only_reel").restricted);
        QCOMPARE(detailsOf("the_lantern_makers").subtitles().size(), 3);
        QVERIFY(detailsOf("only_in_theora").playable().isEmpty());
        QCOMPARE(detailsOf("only_in_theora").otherVideos().size(), 1);
        QCOMPARE(detailsOf("dusk_over_kestrel_ridge").subtitles().size(), 1); // made by a machine
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
                served += finished(QNetworkRequest(file.url()))->readAll().size() == 100'000;
            }
            QVERIFY2(served >= 1, id);
        }
        for (const char *path :
             {"/download/test_card_waltz/../../../etc/passwd",
              "/download/test_card_waltz/%2e%2e/%2e%2e/neon.jpg", "/download/neon_alibi/card.mp4",
              "/7/items/neon_alibi/neon_alibi.mp4", "/services/img/..%2Fneon"})
            QCOMPARE(get(path), QByteArray("Not here."));
    }

    /// A download address leads to one host and, asked again, to the other.
    void twoNodes()
    {
        const QUrl query("?cnt=0");
        QStringList hosts;
        for (int i = 0; i < 2; ++i) {
            QNetworkRequest request(film().resolved(query));
            request.setRawHeader("Range", "bytes=3-6");
            const auto reply = finished(request);
            QCOMPARE(reply->readAll(), QByteArray("3456"));
            hosts.append(reply->url().authority());
            QCOMPARE(reply->url().query(), query.query());
        }
        const auto document = QJsonDocument::fromJson(get("/metadata/neon_alibi"));
        QStringList roots;
        for (const QString &host : std::as_const(hosts))
            roots.append("http://" + host + document["dir"].toString() + "/");
        QCOMPARE(detailsOf("neon_alibi").nodeRoots, roots);
        const QUrl onNode("http://" + document["server"].toString() + document["dir"].toString() +
                          "/neon_alibi.mp4");
        const QByteArray body = finished(QNetworkRequest(onNode))->readAll();
        const QJsonValue file = document["files"][0];
        QCOMPARE(file["size"].toString().toLongLong(), body.size());
        for (const auto &[key, algorithm] : {std::pair("md5", QCryptographicHash::Md5),
                                             std::pair("sha1", QCryptographicHash::Sha1)})
            QCOMPARE(file[key].toString().toLatin1(),
                     QCryptographicHash::hash(body, algorithm).toHex());
    }

    void faults_data()
    {
        const auto row = columns<DemoFaults, QByteArray, QList<int>>("faults", "range", "statuses");
        row("one node fails ranges", {.node = 1, .failsRanges = true}, "bytes=3-6", {206, 500});
        row("which it does not without", {.node = 1, .failsRanges = true}, "", {200, 200});
        row("both say when", {.below = "/download/", .status = 429, .retryAfter = 2}, "bytes=3-6",
            {429, 429});
        row("elsewhere", {.below = "/metadata/", .status = 503}, "", {200, 200});
    }

    void faults()
    {
        QFETCH(DemoFaults, faults);
        QFETCH(QByteArray, range);
        m_services.setFaults(faults);
        m_services.forgetRequests();
        QList<int> statuses;
        for (int i = 0; i < 2; ++i) {
            QNetworkRequest request(film());
            if (!range.isEmpty())
                request.setRawHeader("Range", range);
            const auto reply = finished(request);
            statuses.append(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt());
            QCOMPARE(reply->rawHeader("Retry-After"), QByteArray(faults.retryAfter ? "2" : ""));
        }
        m_services.setFaults(DemoFaults());
        QTEST(statuses, "statuses");
        QCOMPARE(m_services.requests().first().target, film().path().toUtf8());
    }
};

QTEST_GUILESS_MAIN(tst_DemoServer)
#include "tst_demoserver.moc"
