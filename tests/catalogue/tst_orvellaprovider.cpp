// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/OrvellaProvider.h"

#include "loopback/HttpService.h"
#include "platform/http/ServiceHosts.h"
#include "testlib/Awaited.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

namespace {

// About 300 bytes a document: 10,000 of them are far past what is parsed in place.
QByteArray pageOf(int count)
{
    QByteArray documents;
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            documents += ',';
        documents += R"({"identifier":"film-)" + QByteArray::number(i) +
                     R"(","downloads":1,"description":")" + QByteArray(240, 'x') + R"("})";
    }
    return R"({"response":{"docs":[)" + documents + "]}}";
}

QByteArray metadataOf(int files)
{
    QByteArray list = R"({"name":"f.torrent"})";
    for (int i = 0; i < files; ++i)
        list += R"(,{"name":"reel )" + QByteArray::number(i) + R"(.mp4","format":"h.264"})";
    return R"({"metadata":{"title":"T"},"files":[)" + list + "]}";
}

} // namespace

class TestOrvellaProvider : public QObject
{
    Q_OBJECT

private:
    const QByteArray m_searchPath = "/advancedsearch.php";
    HttpService m_server;

    static Result<QList<MediaItem>> search()
    {
        return awaited(OrvellaProvider::search("a!", {}, "downloads desc", 60, 1));
    }
    static Result<ArchiveDetails> details(const QString &id = "abc")
    {
        return awaited(OrvellaProvider::details(id));
    }

private Q_SLOTS:
    void initTestCase()
    {
        ServiceHosts hosts;
        hosts.archive = m_server.base();
        ServiceHosts::replace(hosts);
    }
    void cleanup()
    {
        QTRY_COMPARE(m_server.openRequests(), 0);
        // Requests are deleted later, and the last test has no later.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_server.forgetRequests();
    }

    void searchAsksForThePage()
    {
        m_server.serve(m_searchPath, {.body = pageOf(2)});
        const auto items = search();
        QVERIFY(items);
        QCOMPARE(items->size(), 2);
        QCOMPARE(m_server.requests().size(), 1);
        QCOMPARE(m_server.requests().first().target,
                 "/advancedsearch.php?q=(title:(a)%20OR%20description:(a)%20OR%20subject:(a))"
                 "%20AND%20mediatype:(movies)%20AND%20-access-restricted-item:true"
                 "&fl%5B%5D=identifier&fl%5B%5D=title&fl%5B%5D=year&fl%5B%5D=description"
                 "&fl%5B%5D=creator&fl%5B%5D=downloads&fl%5B%5D=licenseurl&fl%5B%5D=subject"
                 "&sort%5B%5D=downloads%20desc&rows=60&page=1&output=json");
    }

    void unreadableAnswer_data()
    {
        const auto row = columns<QByteArray>("body");
        row("empty", QByteArray());
        row("a web page", "<!DOCTYPE html><html>Busy</html>");
        row("cut off", pageOf(3).chopped(5));
        row("cut off, large", pageOf(10'000).chopped(5));
        row("other types", R"({"response":1,"metadata":"x","files":{}})");
        row("deeply nested", QByteArray(1'000, '[') + QByteArray(1'000, ']'));
    }
    void unreadableAnswer()
    {
        QFETCH(QByteArray, body);
        m_server.serve(m_searchPath, {.body = body});
        m_server.serve("/metadata/abc", {.body = body});
        const auto items = search();
        QVERIFY(items);
        QVERIFY(items->isEmpty());
        const auto item = details();
        QVERIFY(!item);
        QCOMPARE(item.error().text, "Empty response");
    }

    void badStatusIsTheError()
    {
        m_server.serve(m_searchPath, {.body = pageOf(2), .status = 503});
        m_server.serve("/metadata/abc", {.body = metadataOf(2), .status = 404});
        const auto items = search();
        QVERIFY(!items);
        QCOMPARE(items.error().text, "HTTP 503");
        const auto item = details();
        QVERIFY(!item);
        QCOMPARE(item.error().text, "HTTP 404");
    }

    void detailsKeepTheIdentifier()
    {
        m_server.serve("/metadata/a%20b%2523", {.body = metadataOf(1)});
        const auto item = details("a b%23");
        QVERIFY(item);
        QCOMPARE(item->item.id, "a b%23");
        QCOMPARE(item->files.first().url(), m_server.url("/download/a%20b%2523/reel%200.mp4"));
    }

    void largeAnswersComeWhole()
    {
        m_server.serve(m_searchPath, {.body = pageOf(10'000)});
        m_server.serve("/metadata/abc", {.body = metadataOf(10'000)});
        const auto items = search();
        QVERIFY(items);
        QCOMPARE(items->size(), 10'000);
        QCOMPARE(items->last().id, "film-9999");
        const auto item = details();
        QVERIFY(item);
        QCOMPARE(item->files.size(), 10'001);
        QCOMPARE(item->files.last().name, "f.torrent");
    }

    void detailsCanBeStopped()
    {
        m_server.serve("/metadata/abc", {.silent = true});
        std::stop_source source;
        auto task = OrvellaProvider::details("abc", source.get_token());
        QTRY_COMPARE(m_server.requests().size(), 1);
        source.request_stop();
        const auto item = awaited(std::move(task));
        QVERIFY(!item);
        QCOMPARE(item.error().kind, ErrorKind::Cancelled);
    }
};

QTEST_GUILESS_MAIN(TestOrvellaProvider)
#include "tst_orvellaprovider.moc"
