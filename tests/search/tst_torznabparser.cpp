// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/TorznabParser.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

namespace {

QByteArray feed(const QByteArray &content)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><rss version="2.0")"
           R"( xmlns:torznab="http://torznab.com/schemas/2015/feed"><channel><title>Feed</title>)" +
           content + "</channel></rss>";
}

QByteArray attr(const QByteArray &name, const QByteArray &value)
{
    return R"(<torznab:attr name=")" + name + R"(" value=")" + value + R"("/>)";
}

QByteArray item(const QByteArray &content)
{
    return "<item><title>T</title>" + content + "</item>";
}

Result<QList<TorrentResult>> parsed(const QByteArray &document)
{
    return TorznabParser("S").parse(document);
}

// What an item with a title says beyond it, as "field=value", so that a row names what matters.
QStringList fieldsOf(const TorrentResult &result)
{
    QStringList fields;
    const auto add = [&](const char *name, const auto &value) {
        if (value)
            fields.append(QString("%1=%2").arg(name).arg(*value));
    };
    const auto addUrl = [&](const char *name, const std::optional<QUrl> &url) {
        if (url)
            fields.append(QString("%1=%2").arg(name, url->toString(QUrl::FullyEncoded)));
    };
    if (result.id != "T")
        fields.append("id=" + result.id);
    add("hash", result.infoHash);
    add("magnet", result.magnet);
    addUrl("torrent", result.torrentURL);
    addUrl("page", result.pageURL);
    add("size", result.size);
    add("seeders", result.seeders);
    add("leechers", result.leechers);
    return fields;
}

} // namespace

class TestTorznabParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAnItem_data()
    {
        const auto row = columns<QByteArray, QStringList>("content", "expected");
        const QByteArray web = "https://h/t.torrent";
        const auto enclosure = [](const QByteArray &attributes) {
            return "<enclosure " + attributes + "/>";
        };
        row("nothing more", "<pubDate>x</pubDate><description>d</description>", {});
        row("swarm", attr("seeders", "10") + attr("peers", "25"), {"seeders=10", "leechers=15"});
        row("fewer peers than seeders", attr("seeders", "10") + attr("peers", "5"),
            {"seeders=10", "leechers=0"});
        row("peers alone", attr("peers", "5"), {"leechers=5"});
        row("unreadable numbers",
            attr("seeders", " 1") + attr("peers", "1.5") + "<size>1 GB</size>", {});
        row("numbers at their limits",
            attr("seeders", "-9223372036854775808") + attr("peers", "9223372036854775807"),
            {"seeders=-9223372036854775808", "leechers=9223372036854775807"});
        row("hash", attr("infohash", "ABC") + "<guid>g</guid>", {"id=abc", "hash=abc"});
        row("guid", "<guid isPermaLink='true'> g\n</guid>", {"id=g"});
        row("link to a torrent", "<link>" + web + "</link>", {"torrent=" + web});
        row("magnet link", "<link>magnet:?xt=a%2Db</link>", {"magnet=magnet:?xt=a%2Db"});
        row("magnet in capitals", "<link>MAGNET:?xt=a</link>", {});
        row("magnet attribute wins",
            "<link>magnet:?xt=a</link>" + attr("magneturl", "magnet:?xt=b"),
            {"magnet=magnet:?xt=b"});
        row("magnet attribute that is no URL",
            "<link>magnet:?xt=a</link>" + attr("magneturl", "no url"), {});
        row("enclosure wins over link",
            "<link>http://h/page</link>" + enclosure("url='" + web + "' length='1234'"),
            {"torrent=" + web, "size=1234"});
        row("magnet link that is no URL", "<link>magnet:?dn=a b</link>", {});
        row("enclosure of another scheme", "<link>http://h/t</link>" + enclosure("url='ftp://h/t'"),
            {});
        row("the last of two enclosures",
            enclosure("url='" + web + "' length='5'") +
                enclosure("url='http://h/x.nzb' length='0'"),
            {"torrent=http://h/x.nzb", "size=0"});
        row("enclosure without an address", enclosure("length='5'"), {});
        row("no web address", "<link>t.torrent</link><comments>no url</comments>", {});
        row("comments", "<comments>http://h/c?a=1&amp;b=[2]</comments>",
            {"page=http://h/c?a=1&b=[2]"});
        row("size goes before length", enclosure("url='" + web + "' length='5'") + "<size>x</size>",
            {"torrent=" + web});
        row("the later of element and attribute", "<size>1</size>" + attr("size", "2"), {"size=2"});
        row("and the other way", attr("size", "2") + "<size>1</size>", {"size=1"});
        row("any prefix", "<attr name='seeders' value='1'/><n:attr name='peers' value='3'/>",
            {"seeders=1", "leechers=2"});
        row("attr only at the end", "<attrs name='seeders' value='1'/>", {});
        row("no value", "<attr name='seeders'/><attr value='3'/>", {});
        row("prefixed elements are others", "<n:guid>g</n:guid><Guid>h</Guid>", {});
        row("text after an element inside", "<guid>a<b>x</b>c</guid>", {"id=xc"});
        row("text in pieces", "<guid>a&amp;b<!-- no -->&#x63;</guid>", {"id=a&bc"});
    }
    void readsAnItem()
    {
        QFETCH(QByteArray, content);
        const auto results = parsed(feed(item(content)));
        QVERIFY(results);
        QCOMPARE(results->size(), 1);
        QCOMPARE(results->at(0).title, "T");
        QCOMPARE(results->at(0).sources, QStringList{"S"});
        QTEST(fieldsOf(results->at(0)), "expected");
    }

    void keepsItemsApart()
    {
        const auto results =
            parsed(feed(item(attr("seeders", "1")) + "<item><guid>no title</guid></item>" +
                        "<item>" + attr("title", "from an attribute") + "</item>" +
                        "<item><title><![CDATA[hidden]]></title></item>" + "<guid>outside</guid>"));
        QVERIFY(results);
        QStringList titles;
        for (const TorrentResult &result : *results)
            titles.append(result.title);
        QCOMPARE(titles, QStringList({"T", "from an attribute", ""}));
        QVERIFY(!results->at(1).seeders);
        QVERIFY(parsed(feed(""))->isEmpty());
    }

    void fails_data()
    {
        // message: empty: the parser's own
        const auto row = columns<QByteArray, QString>("document", "message");
        row("error", R"(<error code="100" description="Invalid API Key"/>)", "Invalid API Key");
        row("error without a text", "<error/>", "Indexer error");
        row("error after items", feed(item("") + "<error description='Late'/>"), "Late");
        row("the last of two errors", feed("<error description='a'/><error description='b'/>"),
            "b");
        row("error, then torn", "<error description='First'><", "First");
        row("nothing", "", "");
        row("torn", feed(item("")).chopped(9), "");
        row("no XML", "<!doctype html><p>Down<br>", "");
        row("unknown entity", feed(item("<guid>&nbsp;</guid>")), "");
        row("two roots", feed("") + "<x/>", "");
    }
    void fails()
    {
        QFETCH(QByteArray, document);
        QFETCH(QString, message);
        const auto results = parsed(document);
        QVERIFY(!results);
        if (message.isEmpty())
            QCOMPARE(results.error().kind, ErrorKind::Malformed);
        else
            QCOMPARE(results.error().text, message);
        QVERIFY(!results.error().text.isEmpty());
    }

    void refusesAnEntityBomb()
    {
        QByteArray declarations = "<!ENTITY a0 'aaaaaaaaaa'>";
        for (int i = 1; i < 12; ++i) {
            const QByteArray part = "&a" + QByteArray::number(i - 1) + ";";
            declarations += "<!ENTITY a" + QByteArray::number(i) + " '" + part.repeated(10) + "'>";
        }
        const auto results = parsed("<!DOCTYPE rss [" + declarations +
                                    "]><rss><item><title>&a11;</title></item></rss>");
        QVERIFY(!results);
        QCOMPARE(results.error().kind, ErrorKind::Malformed);
    }

    void refusesWhatGrows_data()
    {
        const auto row = columns<QByteArray>("document");
        const QByteArray text(4000, 'a');
        row("one entity, often", "<!DOCTYPE rss [<!ENTITY a '" + text + "'>]><rss>" +
                                     QByteArray("&a;").repeated(10'000) + "</rss>");
        row("default attributes", "<!DOCTYPE rss [<!ATTLIST e x CDATA '" + text + "'>]><rss>" +
                                      QByteArray("<e/>").repeated(10'000) + "</rss>");
        QByteArray attributes;
        for (int i = 0; i < 100'000; ++i)
            attributes += " a" + QByteArray::number(i) + "='>'";
        row("attributes", "<rss><!-- ' --><e" + attributes + "/></rss>");
    }
    void refusesWhatGrows()
    {
        QFETCH(QByteArray, document);
        const auto results = parsed(document);
        QVERIFY(!results);
        QCOMPARE(results.error().kind, ErrorKind::Malformed);
    }

    void readsALongDescription()
    {
        const QByteArray talk = "It's a film, isn't it? a = 'b' &lt;p class=\"x\"&gt; ";
        QVERIFY(parsed(feed(item("<description>" + talk.repeated(200) + "</description>"))));
        QVERIFY(parsed("<!DOCTYPE rss>" + feed(item("")).sliced(38)));
    }

    void saysItShortly()
    {
        const auto results = parsed(feed("&" + QByteArray(5000, 'x') + ";"));
        QVERIFY(!results);
        QVERIFY(results.error().text.size() <= 200);
    }

    void readsNoFileForAnEntity()
    {
        const auto results = parsed("<!DOCTYPE rss [<!ENTITY f SYSTEM 'file:///etc/hostname'>]>"
                                    "<rss><item><title>[&f;]</title></item></rss>");
        QVERIFY(!results || results->at(0).title == "[]");
    }
};

QTEST_GUILESS_MAIN(TestTorznabParser)
#include "tst_torznabparser.moc"
