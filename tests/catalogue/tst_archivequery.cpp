// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveQuery.h"
#include "catalogue/MediaItem.h"

#include <QTest>

using namespace tavelo;
using Text = std::optional<QString>;

namespace {

MediaItem itemWith(const QString &id, const Text &license = {})
{
    return {id, "title", {}, {}, {}, {}, 0, license};
}

} // namespace

class TestArchiveQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sanitize_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("order, case and doubles stay") << "b A  b" << QStringList{"b", "A", "b"};
        QTest::newRow("query syntax")
            << "a:(b) -c*\"d\"\\~e" << QStringList{"a", "b", "c", "d", "e"};
        QTest::newRow("only punctuation") << "!!!" << QStringList{};
        QTest::newRow("accents") << "Amélie" << QStringList{"Amélie"};
        QTest::newRow("decomposed accents") << "Ame\u0301lie" << QStringList{"Ame\u0301lie"};
        QTest::newRow("mark without a letter") << "a \u0301b" << QStringList{"a", "b"};
        QTest::newRow("vowel signs") << "हिन्दी" << QStringList{"हिन्दी"};
        QTest::newRow("numbers of any kind") << "Ⅳ ½ ٣" << QStringList{"Ⅳ", "½", "٣"};
        QTest::newRow("letters past 16 bits") << "𝔐ad𐐀😀x" << QStringList{"𝔐ad𐐀", "x"};
        QTest::newRow("lone surrogate")
            << QString("a") + QChar(0xd800) + "b" << QStringList{"a", "b"};
    }
    void sanitize()
    {
        QFETCH(QString, text);
        QTEST(ArchiveQuery::sanitize(text), "words");
    }

    void buildQuery_data()
    {
        QTest::addColumn<Text>("text");
        QTest::addColumn<Text>("extra");
        QTest::addColumn<QString>("query");
        const QString fixed = "mediatype:(movies) AND -access-restricted-item:true";
        QTest::newRow("nothing") << Text() << Text() << fixed;
        QTest::newRow("no words, empty extra") << Text("!!!") << Text("") << fixed;
        QTest::newRow("text") << Text("Night of!") << Text()
                              << "(title:(Night AND of) OR description:(Night AND of) OR "
                                 "subject:(Night AND of)) AND " +
                                     fixed;
        QTest::newRow("both") << Text("%1") << Text("collection:(x)")
                              << "(title:(1) OR description:(1) OR subject:(1)) AND " + fixed +
                                     " AND collection:(x)";
    }
    void buildQuery()
    {
        QFETCH(Text, text);
        QFETCH(Text, extra);
        QTEST(ArchiveQuery::buildQuery(text, extra), "query");
    }

    void searchURL()
    {
        const auto url = ArchiveQuery::searchURL("title:(é) AND x", "week desc", 24, 2);
        QVERIFY(url);
        QCOMPARE(url->toEncoded(),
                 "https://archive.org/advancedsearch.php?q=title:(%C3%A9)%20AND%20x"
                 "&fl%5B%5D=identifier&fl%5B%5D=title&fl%5B%5D=year&fl%5B%5D=description"
                 "&fl%5B%5D=creator&fl%5B%5D=downloads&fl%5B%5D=licenseurl&fl%5B%5D=subject"
                 "&sort%5B%5D=week%20desc&rows=24&page=2&output=json");
    }

    // What stands for something else in a query must arrive as itself.
    void searchURLKeepsTheQuery()
    {
        const QString query = "a+b&c=d#e%20f;g\"h[1 TO 2]";
        const auto url = ArchiveQuery::searchURL(query, "", 1, 1);
        QVERIFY(url);
        const QByteArray items = url->query(QUrl::FullyEncoded).toLatin1();
        QVERIFY(!items.contains('+'));
        QCOMPARE(QByteArray::fromPercentEncoding(items.split('&').first()), "q=" + query.toUtf8());
    }

    void itemAddresses_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("encoded");
        QTest::newRow("plain") << "abc_D-1.2~" << QByteArray("abc_D-1.2~");
        QTest::newRow("space") << "a b" << QByteArray("a%20b");
        QTest::newRow("delimiters") << "a/b?c#d%e" << QByteArray("a/b%3Fc%23d%25e");
        QTest::newRow("encoded already") << "a%2Fb" << QByteArray("a%252Fb");
        QTest::newRow("accent") << "é" << QByteArray("%C3%A9");
    }
    void itemAddresses()
    {
        QFETCH(QString, id);
        QFETCH(QByteArray, encoded);
        const MediaItem item = itemWith(id);
        QCOMPARE(item.pageURL().toEncoded(), "https://archive.org/details/" + encoded);
        QCOMPARE(item.thumbnailURL().toEncoded(), "https://archive.org/services/img/" + encoded);
        const auto metadata = ArchiveQuery::metadataURL(id);
        QVERIFY(metadata);
        QCOMPARE(metadata->toEncoded(), "https://archive.org/metadata/" + encoded);
    }

    void itemAddressesFallBackToTheRoot()
    {
        const MediaItem item = itemWith(QString("a b") + QChar(0xdc00));
        QCOMPARE(item.pageURL().toEncoded(), "https://archive.org");
        QCOMPARE(item.thumbnailURL().toEncoded(), "https://archive.org");
        QVERIFY(!ArchiveQuery::metadataURL(item.id));
    }

    void licenseLink_data()
    {
        QTest::addColumn<Text>("text");
        QTest::addColumn<bool>("shown");
        QTest::newRow("absent") << Text() << false;
        QTest::newRow("web address") << Text("http://creativecommons.org/x/") << true;
        QTest::newRow("words") << Text("Public Domain") << false;
        QTest::newRow("without a scheme") << Text("creativecommons.org/x") << false;
        QTest::newRow("without a host") << Text("https:///x") << false;
        QTest::newRow("another scheme") << Text("file://host/etc/passwd") << false;
        QTest::newRow("words after it") << Text("https://a.org/x or not") << false;
    }
    void licenseLink()
    {
        QFETCH(Text, text);
        QTEST(!itemWith("a", text).licenseLink().isEmpty(), "shown");
    }

    void mediaItemSurvivesJson()
    {
        const MediaItem bare = itemWith("a");
        const MediaItem full{"a", "b", "1968", "c", "d", {"e", ""}, 9007199254740993, "f"};
        QCOMPARE(MediaItem::fromJson(bare.toJson()), bare);
        QCOMPARE(MediaItem::fromJson(full.toJson()), full);
        QCOMPARE(bare.toJson().keys(), QStringList({"downloads", "id", "subjects", "title"}));
        for (const char *key : {"downloads", "id", "subjects", "title"}) {
            QJsonObject json = full.toJson();
            json.remove(QLatin1String(key));
            QVERIFY2(!MediaItem::fromJson(json), key);
        }
    }
};

QTEST_GUILESS_MAIN(TestArchiveQuery)
#include "tst_archivequery.moc"
