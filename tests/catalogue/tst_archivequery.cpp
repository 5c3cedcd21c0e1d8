// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveQuery.h"
#include "catalogue/MediaItem.h"
#include "testlib/Table.h"

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
        const auto row = columns<QString, QStringList>("text", "words");
        row("order, case and doubles stay", "b A  b", {"b", "A", "b"});
        row("query syntax", "a:(b) -c*\"d\"\\~e", {"a", "b", "c", "d", "e"});
        row("only punctuation", "!!!", {});
        row("accents", "Amélie", {"Amélie"});
        row("decomposed accents", "Ame\u0301lie", {"Ame\u0301lie"});
        row("mark without a letter", "a \u0301b", {"a", "b"});
        row("vowel signs", "हिन्दी", {"हिन्दी"});
        row("numbers of any kind", "Ⅳ ½ ٣", {"Ⅳ", "½", "٣"});
        row("letters past 16 bits", "𝔐ad𐐀😀x", {"𝔐ad𐐀", "x"});
        row("lone surrogate", QString("a") + QChar(0xd800) + "b", {"a", "b"});
    }
    void sanitize()
    {
        QFETCH(QString, text);
        QTEST(ArchiveQuery::sanitize(text), "words");
    }

    void buildQuery_data()
    {
        const auto row = columns<Text, Text, QString>("text", "extra", "query");
        const QString fixed = "mediatype:(movies) AND -access-restricted-item:true";
        row("nothing", Text(), Text(), fixed);
        row("no words, empty extra", Text("!!!"), Text(""), fixed);
        row("text", Text("Night of!"), Text(),
            "(title:(Night AND of) OR description:(Night AND of) OR "
            "subject:(Night AND of)) AND " +
                fixed);
        row("both", Text("%1"), Text("collection:(x)"),
            "(title:(1) OR description:(1) OR subject:(1)) AND " + fixed + " AND collection:(x)");
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
        const auto row = columns<QString, QByteArray>("id", "encoded");
        row("plain", "abc_D-1.2~", "abc_D-1.2~");
        row("space", "a b", "a%20b");
        row("delimiters", "a/b?c#d%e", "a/b%3Fc%23d%25e");
        row("encoded already", "a%2Fb", "a%252Fb");
        row("accent", "é", "%C3%A9");
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
        const auto row = columns<Text, bool>("text", "shown");
        row("absent", Text(), false);
        row("web address", Text("http://creativecommons.org/x/"), true);
        row("words", Text("Public Domain"), false);
        row("without a scheme", Text("creativecommons.org/x"), false);
        row("without a host", Text("https:///x"), false);
        row("another scheme", Text("file://host/etc/passwd"), false);
        row("words after it", Text("https://a.org/x or not"), false);
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
