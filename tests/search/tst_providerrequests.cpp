// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ApiBayProvider.h"
#include "search/TorznabProvider.h"
#include "search/YTSProvider.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

class TestProviderRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asks_data()
    {
        // expected: empty: refused
        const auto row = columns<ProviderKind, QString, QString, QByteArray>("kind", "base",
                                                                             "query", "expected");
        const auto apiBay = ProviderKind::ApiBay;
        const auto torznab = ProviderKind::Torznab;
        row("ApiBay", apiBay, "https://a.example", "one two",
            "https://a.example/q.php?q=one%20two&cat=200");
        row("YTS", ProviderKind::Yts, "https://y.example/", "film",
            "https://y.example/api/v2/list_movies.json?query_term=film&limit=30");
        row("Torznab", torznab, "http://127.0.0.1:9117/api/v2.0/indexers/all/results/torznab/api",
            "x", "http://127.0.0.1:9117/api/v2.0/indexers/all/results/torznab/api?t=search&q=x");
        row("Torznab at a folder", torznab, "http://h/api/", "x", "http://h/api/?t=search&q=x");
        row("reserved characters", apiBay, "http://h", "a&b=c+d#e?f/g%20\"é-._~",
            "http://h/q.php?q=a%26b%3Dc%2Bd%23e%3Ff%2Fg%2520%22%C3%A9-._~&cat=200");
        row("a folder", apiBay, "http://h/sub/", "x", "http://h/sub/q.php?q=x&cat=200");
        row("one slash goes", apiBay, "http://h/sub//", "x", "http://h/sub//q.php?q=x&cat=200");
        row("an encoded folder", apiBay, "http://h/a%2Fb%20c", "x",
            "http://h/a%2Fb%20c/q.php?q=x&cat=200");
        row("a query of its own", apiBay, "http://h/?key=a%26b&key=2", "x",
            "http://h/q.php?key=a%26b&key=2&q=x&cat=200");
        row("an empty query of its own", apiBay, "http://h/?", "x", "http://h/q.php?q=x&cat=200");
        row("blanks around", apiBay, " \thttp://h \t", "x", "http://h/q.php?q=x&cat=200");
        row("a line break around", apiBay, "http://h\n", "x", "");
        row("no scheme", apiBay, "h.example", "x", "");
        row("host and port only", apiBay, "localhost:9117", "x", "");
        row("no host", apiBay, "http://", "x", "");
        row("no URL", apiBay, "http://h h", "x", "");
        row("nothing", apiBay, "", "x", "");
    }
    void asks()
    {
        QFETCH(ProviderKind, kind);
        QFETCH(QString, base);
        QFETCH(QString, query);
        QFETCH(QByteArray, expected);
        const auto config = ProviderConfig::create("n", kind, base);
        const auto request = config.kind == ProviderKind::ApiBay ? ApiBayProvider::request
                             : config.kind == ProviderKind::Yts  ? YTSProvider::request
                                                                 : TorznabProvider::request;
        const auto url = request(config, query);
        QCOMPARE(url ? url->toEncoded() : QByteArray(), expected);
        if (!url)
            QCOMPARE(url.error().text, "Invalid URL");
    }

    void sendsTheKeyLast()
    {
        const auto config =
            ProviderConfig::create("n", ProviderKind::Torznab, "http://h/api?x=1", "k&y");
        QCOMPARE(TorznabProvider::request(config, "q")->toEncoded(),
                 "http://h/api?x=1&t=search&q=q&apikey=k%26y");
    }
};

QTEST_GUILESS_MAIN(TestProviderRequests)
#include "tst_providerrequests.moc"
