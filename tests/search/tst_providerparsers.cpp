// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/ApiBayParser.h"
#include "search/YTSParser.h"
#include "testlib/Table.h"
#include "torrent/Magnet.h"

#include <QTest>

using namespace tavelo;

namespace {

const QString hash = "AB23456789abcdef0123456789abcdef01234567";

// id|title|size|seeders|leechers of each result; what is absent is "-".
QStringList linesOf(const Result<QList<TorrentResult>> &results)
{
    if (!results)
        return {"error: " + results.error().text};
    const auto text = [](std::optional<qint64> number) {
        return number ? QString::number(*number) : QString("-");
    };
    QStringList lines;
    for (const TorrentResult &result : *results)
        lines.append(QStringList{result.id, result.title, text(result.size), text(result.seeders),
                                 text(result.leechers)}
                         .join('|'));
    return lines;
}

// With HASH in the hash's place.
QByteArray json(QByteArray text)
{
    return text.replace("HASH", hash.toLatin1());
}

QString line(const QString &title, const QString &numbers)
{
    return hash.toLower() + "|" + title + "|" + numbers;
}

// Rows of a table of bodies or, with a frame, of what stands in its FIELDS.
auto rowsIn(const QByteArray &frame = "FIELDS")
{
    return [frame](const char *name, const QByteArray &fields, const QStringList &expected) {
        Table<QByteArray, QStringList>()(name, json(QByteArray(frame).replace("FIELDS", fields)),
                                         expected);
    };
}

} // namespace

class TestProviderParsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void apiBay_data()
    {
        columns<QByteArray, QStringList>("body", "expected");
        const auto row = rowsIn(R"([{"name":"N","info_hash":"HASH"FIELDS}])");
        row("texts", R"(,"size":"123","seeders":"15","leechers":"0")", {line("N", "123|15|0")});
        row("numbers", R"(,"size":123,"seeders":15,"leechers":-1)", {line("N", "123|15|-1")});
        row("unreadable", R"(,"size":"1.4 GB","seeders":1.5,"leechers":"")", {line("N", "-|-|-")});
        row("other kinds", R"(,"size":null,"seeders":[1],"leechers":true)", {line("N", "-|-|-")});
        row("limits", R"(,"size":"9223372036854775808","seeders":1e3)", {line("N", "-|1000|-")});
        row("missing", "", {line("N", "-|-|-")});
        const auto body = rowsIn();
        body("none", "[]", {});
        body("the placeholder",
             R"([{"name":"No results","info_hash":"0000000000000000000000000000000000000000"}])",
             {});
        body("unusable rows",
             R"([{"info_hash":"HASH"},{"name":"x"},{"name":1,"info_hash":"HASH"},)"
             R"({"name":"x","info_hash":"0123456789abcdef0123456789abcde"},)"
             R"({"name":"N","info_hash":"HASH"}])",
             {line("N", "-|-|-")});
        body("32 characters, a zero first",
             R"([{"name":"N","info_hash":"0123456789abcdef0123456789ABCDEF"}])",
             {"0123456789abcdef0123456789abcdef|N|-|-|-"});
        body("an object", R"({"error":"no"})", {"error: Empty response"});
        body("not only objects", R"([{"name":"N","info_hash":"HASH"},1])",
             {"error: Empty response"});
    }
    void apiBay()
    {
        QFETCH(QByteArray, body);
        QTEST(linesOf(parseApiBay(body, "S")), "expected");
    }

    void apiBayKeepsTheHashsCaseInTheLink()
    {
        const auto results = parseApiBay(json(R"([{"name":"N & M","info_hash":"HASH"}])"), "S");
        TorrentResult expected;
        expected.id = hash.toLower();
        expected.title = "N & M";
        expected.sources = QStringList{"S"};
        expected.infoHash = hash.toLower();
        expected.magnet = makeMagnet(hash, "N & M");
        QVERIFY(results->at(0) == expected);
    }

    void yts_data()
    {
        columns<QByteArray, QStringList>("body", "expected");
        const QString bare = line("Untitled (?)", "-|-|-");
        const auto movie = rowsIn(R"({"data":{"movies":[{FIELDS}]}})");
        movie("torrents of other kinds", R"("torrents":[1,{"hash":"HASH"}])", {});
        movie("no torrents", R"("title":"T")", {});
        const auto torrent =
            rowsIn(R"({"data":{"movies":[{"torrents":[{"hash":"HASH"FIELDS}]}]}})");
        torrent("odd numbers", R"(,"size_bytes":5.9,"seeds":"6","peers":7.5)",
                {line("Untitled (?)", "5|-|-")});
        torrent("no numbers", R"(,"size_bytes":"5","seeds":null,"peers":1e30)", {bare});
        torrent("size past 64 bits", R"(,"size_bytes":1e30)", {bare});
        movie("others without a hash", R"("torrents":[{"quality":"x"},{"hash":1},{"hash":"HASH"}])",
              {bare});
        movie(
            "whole",
            R"("title":"T","year":1999,"torrents":[{"hash":"HASH","quality":"1080p","type":"web","size_bytes":5,"seeds":6,"peers":7}])",
            {line("T (1999) 1080p web", "5|6|7")});
        movie("without a year or type",
              R"("title":"Name","torrents":[{"hash":"HASH","quality":"720p"}])",
              {line("Name (?) 720p", "-|-|-")});
        movie("without a title or quality",
              R"("title":7,"year":"1999","torrents":[{"hash":"HASH","type":"web"}])",
              {line("Untitled (?)  web", "-|-|-")});
        movie("line breaks stay",
              R"("title":"T\n","year":1999.5,"torrents":[{"hash":"HASH","size_bytes":-5.9}])",
              {line("T\n (?)", "-5|-|-")});
        const auto body = rowsIn();
        const QStringList empty{"error: Empty response"};
        body("movies null", R"({"data":{"movies":null}})", {});
        body("no movies", R"({"status":"ok","data":{"movie_count":0}})", {});
        body("movies of other kinds", R"({"data":{"movies":[1]}})", {});
        body("no data", R"({"status":"error"})", empty);
        body("data of another kind", R"({"data":[]})", empty);
        body("a list", R"([{"data":{}}])", empty);
    }
    void yts()
    {
        QFETCH(QByteArray, body);
        QTEST(linesOf(parseYTS(body, "S")), "expected");
    }

    void ytsGivesEachTorrentItsMovie()
    {
        const auto results = parseYTS(
            R"({"data":{"movies":[{"title":"T","year":1999,"url":"https:\/\/y.example\/m?x=[1]",
                "torrents":[{"hash":"AA","quality":"3D","url":"https:\/\/y.example\/t\/AA"},
                            {"hash":"BB","url":"no url"}]}]}})",
            "S");
        QCOMPARE(results->size(), 2);
        for (const TorrentResult &result : *results) {
            QCOMPARE(result.pageURL, QUrl("https://y.example/m?x=[1]"));
            QCOMPARE(result.year, "1999");
            QCOMPARE(result.sources, QStringList{"S"});
        }
        QCOMPARE(results->at(0).magnet, makeMagnet("AA", "T (1999) 3D"));
        QCOMPARE(results->at(0).infoHash, "aa");
        QCOMPARE(results->at(0).torrentURL, QUrl("https://y.example/t/AA"));
        QVERIFY(!results->at(1).torrentURL);
    }

    void ytsRefusesAnAnswerThatSwells()
    {
        const QByteArray torrents = QByteArray(R"({"hash":"a"},)").repeated(3000).chopped(1);
        QByteArray body = R"({"data":{"movies":[{"title":"TITLE","torrents":[TORRENTS]}]}})";
        body.replace("TORRENTS", torrents);
        QVERIFY(parseYTS(body, "S"));
        QVERIFY(!parseYTS(body.replace("TITLE", QByteArray(30'000, 't')), "S"));
    }

    void saysWhatIsWrongWithJson()
    {
        for (const auto parse : {parseApiBay, parseYTS}) {
            for (const QByteArray &body : {QByteArray("<html>"), QByteArray("["), QByteArray()}) {
                const auto results = parse(body, "S");
                QVERIFY(!results);
                QCOMPARE(results.error().kind, ErrorKind::Malformed);
                QVERIFY(!results.error().text.isEmpty());
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestProviderParsers)
#include "tst_providerparsers.moc"
