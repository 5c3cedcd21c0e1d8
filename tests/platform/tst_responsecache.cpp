// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpService.h"
#include "platform/http/HttpClient.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;
using namespace std::chrono_literals;

class TestResponseCache : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    HttpService m_server;
    std::unique_ptr<HttpClient> m_client;
    const HttpService::Headers m_anHour{{"Cache-Control", "max-age=3600"}};

    void makeClient(const QString &folder)
    {
        m_client = std::make_unique<HttpClient>();
        m_client->setCacheFolder(m_folder.filePath(folder));
    }

    QByteArray body()
    {
        const auto response = awaited(m_client->get(m_server.url("/x"), 10s));
        return response ? response->body : "error: " + response.error().text.toUtf8();
    }

    int filesIn(const QString &folder) const
    {
        int count = 0;
        QDirIterator files(m_folder.filePath(folder), QDir::Files, QDirIterator::Subdirectories);
        for (; files.hasNext(); files.next())
            ++count;
        return count;
    }

private Q_SLOTS:
    void init()
    {
        m_server.forgetRequests();
        makeClient(QTest::currentTestFunction());
    }

    void keepsWhatMayBeKept_data()
    {
        const auto row = columns<HttpService::Headers, int>("headers", "requests");
        row("an hour", m_anHour, 1);
        row("nothing said", HttpService::Headers{}, 2);
        row("no store", HttpService::Headers{{"Cache-Control", "no-store"}}, 2);
    }
    void keepsWhatMayBeKept()
    {
        QFETCH(HttpService::Headers, headers);
        makeClient(QTest::currentDataTag());
        m_server.serve("/x", {.body = "kept", .headers = headers});
        QCOMPARE(body(), "kept");
        QCOMPARE(body(), "kept");
        QTEST(int(m_server.requests().size()), "requests");
    }

    void asksWhetherItChanged()
    {
        HttpService::Headers headers{{"Cache-Control", "max-age=0, must-revalidate"}};
        m_server.serve("/x", {.body = "old", .headers = headers, .etag = "\"1\""});
        QCOMPARE(body(), "old");
        m_server.serve("/x", {.body = "", .status = 304, .headers = headers, .etag = "\"1\""});
        QCOMPARE(body(), "old");
        QCOMPARE(m_server.requests().last().headers.value("if-none-match"), "\"1\"");
        m_server.serve("/x", {.body = "new", .headers = headers, .etag = "\"2\""});
        QCOMPARE(body(), "new");
        QCOMPARE(m_server.requests().size(), 3);
    }

    void followsAKeptRedirect()
    {
        m_server.serve("/x", {.body = "moved",
                              .status = 301,
                              .headers = m_anHour + HttpService::Headers{{"Location", "/end"}}});
        m_server.serve("/end", {.body = "end"});
        QCOMPARE(body(), "end");
        QCOMPARE(body(), "end");
    }

    void neverHidesAFailure()
    {
        m_server.serve("/x", {.body = "old", .etag = "\"1\""});
        QCOMPARE(body(), "old");
        m_server.serve("/x", {.body = "busy", .status = 503});
        QCOMPARE(body(), "busy");
    }

    void survivesARestartAndVanishedFiles()
    {
        m_server.serve("/x", {.body = "kept", .headers = m_anHour});
        QCOMPARE(body(), "kept");
        const QString folder = QTest::currentTestFunction();
        makeClient(folder);
        QCOMPARE(body(), "kept");
        QCOMPARE(m_server.requests().size(), 1);
        QVERIFY(QDir(m_folder.filePath(folder)).removeRecursively());
        makeClient(folder);
        QCOMPARE(body(), "kept");
        QCOMPARE(m_server.requests().size(), 2);
    }

    void movesAndForgets()
    {
        m_server.serve("/x", {.body = "kept", .headers = m_anHour});
        QCOMPARE(body(), "kept");
        m_client->setCacheFolder(m_folder.filePath("elsewhere/deep"));
        QCOMPARE(body(), "kept");
        QCOMPARE(m_server.requests().size(), 2);
        QCOMPARE(filesIn("elsewhere/deep"), 1);
        const auto cleared = m_client->clearCache();
        QTRY_VERIFY(cleared.isFinished());
        QCOMPARE(filesIn("elsewhere/deep"), 0);
        QCOMPARE(body(), "kept");
        QCOMPARE(m_server.requests().size(), 3);
    }

    void worksWithoutItsFolder()
    {
        m_server.serve("/x", {.body = "there", .headers = m_anHour});
        m_client->setCacheFolder("/dev/null/no");
        QCOMPARE(body(), "there");
        QCOMPARE(body(), "there");
    }
};

QTEST_GUILESS_MAIN(TestResponseCache)
#include "tst_responsecache.moc"
