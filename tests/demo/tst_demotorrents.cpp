// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "testlib/Table.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

using namespace tavelo;

/// The torrent search of the demo's services, asked as its clients ask.
class tst_DemoTorrents : public QObject
{
    Q_OBJECT

private:
    DemoServer m_services{QString()};
    QNetworkAccessManager m_network;
    const QString m_reel = "/torznab/reel/api?t=search&apikey=demo-key&q=";

    std::unique_ptr<QNetworkReply> ask(const QString &address)
    {
        const QString base = address.startsWith('/') ? m_services.baseUrl() : QString();
        return std::unique_ptr<QNetworkReply>(m_network.get(QNetworkRequest(QUrl(base + address))));
    }

    QByteArray body(const QString &address)
    {
        const auto reply = ask(address);
        return QTest::qWaitFor([&] { return reply->isFinished(); }) ? reply->readAll() : "late";
    }

    QJsonArray rows(const QString &q)
    {
        return QJsonDocument::fromJson(body("/q.php?cat=200&q=" + q)).array();
    }

    QJsonObject movies(const QString &q)
    {
        const QByteArray text = body("/api/v2/list_movies.json?limit=30&query_term=" + q);
        return QJsonDocument::fromJson(text)["data"].toObject();
    }

    static QStringList captures(const QByteArray &text, const char *pattern)
    {
        QStringList captures;
        for (auto found = QRegularExpression(pattern).globalMatch(text); found.hasNext();)
            captures.append(found.next().captured(1));
        return captures;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_services.start()); }

    void apiBay()
    {
        for (const QJsonValue row : rows("")) {
            for (const QJsonValue field : row.toObject())
                QVERIFY(field.isString());
            const QByteArray hash = row["info_hash"].toString().toLatin1();
            const QByteArray file = body("/torrents/" + hash.toLower() + ".torrent");
            const QByteArray info = file.mid(file.indexOf("4:info") + 6).chopped(1);
            const auto sha1 = QCryptographicHash::hash(info, QCryptographicHash::Sha1);
            QCOMPARE(sha1.toHex().toUpper(), hash);
            qint64 size = 0;
            for (const QString &length : captures(info, "6:lengthi([0-9]+)e"))
                size += length.toLongLong();
            QCOMPARE(QString::number(size), row["size"].toString());
            QCOMPARE(info.contains("5:filesl"), row["num_files"].toString() != "1");
        }
        QCOMPARE(rows("no+hit").size(), 1);
        QCOMPARE(rows("no+hit").first()["info_hash"].toString(), QString(40, '0'));
    }

    void queries_data()
    {
        const auto row = columns<QString, QString>("query", "title");
        const QString rook = "Rook & Daughter 1946 1080p BluRay x264";
        row("case, order", "x264+DAUGHTER+rook", rook);
        row("ampersand, spaces", "%20rook%20%20%26", rook);
        row("plus", "%2B", "Colony Seven + Bonus Reel: \"The Word\" <interviews>");
        row("percent", "100%25+%c3%89T", "Harbour at Low Tide 1962 (100% uncut #1) été");
        row("right to left", "%D8%A7%D9%84%D9%85%D9%86%D8%A7%D8%B1%D8%A9",
            "المنارة (1955) 1080p نسخة مرممة");
    }

    void queries()
    {
        QFETCH(QString, query);
        QCOMPARE(rows(query).size(), 1);
        QTEST(rows(query).first()["name"].toString(), "title");
    }

    void yts()
    {
        QCOMPARE(movies("KESTREL+1948")["movie_count"], QJsonValue(1));
        QCOMPARE(movies("KESTREL+1948")["movies"][0]["torrents"].toArray().size(), 3);
        QSet<bool> withType;
        for (const QJsonValue movie : movies("")["movies"].toArray()) {
            QVERIFY(body(movie["url"].toString()).contains("</html>"));
            for (const QJsonValue torrent : movie["torrents"].toArray()) {
                QVERIFY(torrent["size_bytes"].isDouble() && torrent["seeds"].isDouble());
                QVERIFY(body(torrent["url"].toString()).contains("4:infod"));
                withType.insert(torrent["type"].isString());
            }
        }
        QCOMPARE(withType.size(), 2);
        QCOMPARE(movies("none")["movie_count"], QJsonValue(0));
        QVERIFY(!movies("none").contains("movies"));
    }

    void torznab()
    {
        const QByteArray rss = body(m_reel);
        QXmlStreamReader xml(rss);
        while (!xml.atEnd())
            xml.readNext();
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        for (const char *form :
             {"<torznab:attr name=\"magneturl\" value=\"magnet:.xt=urn:btih:",
              "<link>magnet:.xt=urn:btih:", "</guid>\\s*<(description|size)>", "<size>[0-9]+<",
              "<enclosure", "name=\"size\" value=\"[0-9]", "length=\"[1-9]"})
            QVERIFY2(!captures(rss, form).isEmpty(), form);
        for (const QString &file : captures(rss, "<enclosure url=\"([^m][^\"]*)\"")) {
            QVERIFY2(file.startsWith(m_services.baseUrl()), qPrintable(file));
            QVERIFY(body(file).contains("4:infod"));
        }
        for (const QString &page : captures(rss, "<comments>([^<]*)<"))
            QVERIFY(body(page).contains("</html>"));
        QVERIFY(body(m_reel + "no+hit").contains("<channel>"));

        const QStringList here = captures(rss, "name=\"infohash\" value=\"([^\"]*)\"");
        int shared = 0;
        for (const QJsonValue row : rows(""))
            shared += here.contains(row["info_hash"].toString(), Qt::CaseInsensitive) ? 1 : 0;
        QVERIFY2(shared >= 10 && shared < here.size(), qPrintable(QString::number(shared)));
    }

    void refusals_data()
    {
        const auto row = columns<QString, int, QByteArray>("address", "status", "text");
        const QByteArray key = "<error code=\"100\" description=\"Invalid API Key\"/>";
        row("key", "/torznab/reel/api?t=search&q=a&apikey=demo", 200, key);
        row("function", "/torznab/reel/api?t=tell&apikey=demo-key", 200, "<error code=\"202\"");
        row("broken", "/torznab/broken/api?t=search", 503, QByteArray());
        row("indexer", "/torznab/none/api?t=search", 404, QByteArray());
        row("hash", "/torrents/00.torrent", 404, QByteArray());
    }

    void refusals()
    {
        QFETCH(QString, address);
        QFETCH(QByteArray, text);
        const auto reply = ask(address);
        QTRY_VERIFY(reply->isFinished());
        QTEST(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), "status");
        QVERIFY(reply->readAll().contains(text));
    }

    void slowIndexer()
    {
        QElapsedTimer clock;
        clock.start();
        const auto slow = ask(QString(m_reel + "alibi").replace("reel", "slow"));
        QTRY_VERIFY_WITH_TIMEOUT(slow->isFinished(), 30'000);
        QCOMPARE(slow->readAll().count("<item>"), 2);
        QVERIFY2(clock.elapsed() >= 2'500, qPrintable(QString::number(clock.elapsed())));
    }
};

QTEST_GUILESS_MAIN(tst_DemoTorrents)
#include "tst_demotorrents.moc"
