// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"
#include "testlib/Table.h"

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
};

QTEST_GUILESS_MAIN(tst_DemoTorrents)
#include "tst_demotorrents.moc"
