// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveParser.h"
#include "testlib/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace tavelo;
using Text = std::optional<QString>;

namespace {

QByteArray page(const QByteArray &documents)
{
    return R"({"response":{"docs":[)" + documents + "]}}";
}

MediaItem only(const QByteArray &document)
{
    const QList<MediaItem> items = ArchiveParser::parseSearch(page(document));
    return items.size() == 1 ? items.first() : MediaItem{};
}

ArchiveDetails detailsOf(const QByteArray &metadata, const QByteArray &files = "[]")
{
    const QByteArray body = R"({"metadata":)" + metadata + R"(,"files":)" + files + '}';
    return ArchiveParser::parseDetails(body, "abc").value_or(ArchiveDetails());
}

QStringList names(const QList<ArchiveFile> &files)
{
    QStringList list;
    for (const ArchiveFile &file : files)
        list.append(file.name);
    return list;
}

} // namespace

class TestArchiveParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void first_data()
    {
        const auto row = columns<QByteArray, Text>("json", "text");
        const auto reads = [&](const char *json, const Text &text) { row(json, json, text); };
        reads(R"("")", "");
        reads(R"([["x","y"],"z"])", "x");
        reads("1234", "1234");
        reads("-9223372036854775808", "-9223372036854775808");
        reads("9007199254740993", "9007199254740993");
        reads("2.5", "2.5");
        reads("0.1", "0.1");
        reads("true", "1");
        reads("[false]", "0");
        reads("null", {});
        reads("{}", {});
        reads("[]", {});
        reads("[null,1]", {});
    }
    void first()
    {
        QFETCH(QByteArray, json);
        const QJsonDocument document = QJsonDocument::fromJson('[' + json + ']');
        QTEST(ArchiveParser::first(document.array().first()), "text");
    }
    void firstOfNothing() { QCOMPARE(ArchiveParser::first(QJsonValue::Undefined), Text()); }

    void searchWithoutUsablePage_data()
    {
        const auto row = columns<QByteArray>("body");
        for (const char *body :
             {"", "<html>busy</html>", "null", "[]", "{}", R"({"response":[]})",
              R"({"response":{"docs":{}}})", R"({"response":{"docs":[{"identifier":"a"},1]}})",
              R"({"response":{"docs":[{"identifier":"a"}]})", "{\"response\":\"\xff\"}"})
            row(body, QByteArray(body));
        row("deeply nested", page(QByteArray(1'000'000, '[')));
    }
    void searchWithoutUsablePage()
    {
        QFETCH(QByteArray, body);
        QCOMPARE(ArchiveParser::parseSearch(body), QList<MediaItem>());
    }

    void searchCoercesFields()
    {
        const MediaItem item = only(R"({"identifier":["id"],"title":["t","u"],"year":1968,
            "description":["<p>x</p>","y"],"creator":[["c"]],"downloads":"+12",
            "licenseurl":"Public Domain","subject":"Horror; Zombies"})");
        QCOMPARE(item, (MediaItem{
                           "id", "t", "1968", "x", "c", {"Horror; Zombies"}, 12, "Public Domain"}));
        QCOMPARE(only(R"({"identifier":7,"title":{},"year":null,"description":"<br>","creator":[],
            "downloads":"n/a","licenseurl":{"a":1},"subject":["a",2]})"),
                 (MediaItem{"7", "7", {}, {}, {}, {}, 0, {}}));
    }

    void searchKeepsOrderAndSkips()
    {
        const auto items = ArchiveParser::parseSearch(
            page(R"({"identifier":"b"},{"title":"x"},{"identifier":null},{"identifier":"a"})"));
        QCOMPARE(items.size(), 2);
        QCOMPARE(items.first().id, "b");
        QCOMPARE(items.last().id, "a");
    }

    void downloads_data()
    {
        const auto row = columns<QByteArray, qint64>("json", "downloads");
        const auto reads = [&](const char *json, qint64 downloads) { row(json, json, downloads); };
        reads("1234", 1234);
        reads(R"(["-7"])", -7);
        reads(R"("9223372036854775807")", 9223372036854775807);
        reads(R"("9223372036854775808")", 0);
        reads("2.5", 0);
        reads(R"("")", 0);
        reads(R"("+")", 0);
        reads(R"(" 1")", 0);
        reads(R"("1,000")", 0);
        reads(R"("0x10")", 0);
        reads(R"("٣")", 0);
    }
    void downloads()
    {
        QFETCH(QByteArray, json);
        QTEST(only(R"({"identifier":"a","downloads":)" + json + '}').downloads, "downloads");
    }

    void detailsWithoutMetadata_data()
    {
        const auto row = columns<QByteArray>("body");
        for (const char *body : {"", "<html>", "[]", "{}", R"({"metadata":[]})",
                                 R"({"metadata":{},"files":[)", R"({"error":"no such item"})"})
            row(body, QByteArray(body));
    }
    void detailsWithoutMetadata()
    {
        QFETCH(QByteArray, body);
        QVERIFY(!ArchiveParser::parseDetails(body, "abc"));
    }

    void detailsItem()
    {
        const ArchiveDetails details = detailsOf(
            R"({"identifier":"other","title":["T"],"date":"1968-10-01","downloads":5,
                "subject":"Horror; Zombies ;;\tClassic\n"})");
        QCOMPARE(
            details.item,
            (MediaItem{"abc", "T", "1968", {}, {}, {"Horror", "Zombies", "", "Classic\n"}, 0, {}}));
        QVERIFY(!details.restricted);
        const MediaItem item =
            detailsOf(R"({"year":"c. 1930","date":"68","subject":["a;b"]})").item;
        QCOMPARE(item, (MediaItem{"abc", "abc", "c. 1930", {}, {}, {"a;b"}, 0, {}}));
        QCOMPARE(detailsOf(R"({"date":"68"})").item.year, "68");
    }

    void restricted_data()
    {
        const auto row = columns<QByteArray, bool>("json", "restricted");
        row("text", R"("true")", true);
        row("list", R"(["true"])", true);
        row("boolean", "true", false);
        row("upper case", R"("TRUE")", false);
    }
    void restricted()
    {
        QFETCH(QByteArray, json);
        QTEST(detailsOf(R"({"access-restricted-item":)" + json + '}').restricted, "restricted");
    }

    void fileAddress_data()
    {
        const auto row = columns<QString, QByteArray>("name", "path");
        const auto becomes = [&](const char *name, const char *path) { row(name, name, path); };
        becomes("Dir/My Film #1.mp4", "Dir/My%20Film%20%231.mp4");
        becomes("//a///b/", "a/b");
        becomes("100%/50%2F50?.mp4", "100%25/50%252F50%3F.mp4");
        becomes("a+b&c=d@e:f!.mp4", "a+b&c=d@e:f!.mp4");
        becomes("[x] {y} |z|.mp4", "%5Bx%5D%20%7By%7D%20%7Cz%7C.mp4");
        becomes("Café 日本.mp4", "Caf%C3%A9%20%E6%97%A5%E6%9C%AC.mp4");
    }
    void fileAddress()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, path);
        const QJsonArray files{QJsonObject{{"name", name}}};
        const auto found = detailsOf("{}", QJsonDocument(files).toJson()).files;
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.first().name, name);
        QCOMPARE(found.first().url().toEncoded(), "https://archive.org/download/abc/" + path);
    }

    void nodes_data()
    {
        const auto row = columns<QByteArray, QStringList>("json", "addresses");
        const QString path = "/3/items/a%20b/reel%201.mp4";
        const auto hosts = [=](const QStringList &names) {
            QStringList urls;
            for (const QString &name : names)
                urls << "https://" + name + path;
            return urls;
        };
        const QByteArray dir = ",'dir':'/3/items/a b'";
        row("preferred first",
            "'server':'ia6.us.archive.org',"
            "'workable_servers':['dn7.ca.archive.org','ia6.us.archive.org']" +
                dir,
            hosts({"ia6.us.archive.org", "dn7.ca.archive.org"}));
        row("with a port", "'server':'127.0.0.2:8080'" + dir, hosts({"127.0.0.2:8080"}));
        row("the first four", "'workable_servers':['a.b','b.b','c.b','d.b','e.b']" + dir,
            hosts({"a.b", "b.b", "c.b", "d.b"}));
        row("no names of hosts",
            "'server':'evil.example/x?','workable_servers':['a','a..b','-a.b','u@a.b','a.b:0',"
            "'a.b:99999','[::1]','a b.c','A.B','',7,['c.d'],'" +
                QByteArray("a.").repeated(130) + "b']" + dir,
            {});
        row("not a list", "'workable_servers':'a.b'" + dir, {});
        row("no folder", "'server':'a.b'", {});
        row("another folder", "'server':'a.b','dir':'3/items'", {});
        row("a way out", "'server':'a.b','dir':'/3/../items'", {});
        row("a long folder", "'server':'a.b','dir':'/" + QByteArray(1024, 'x') + "'", {});
    }
    void nodes()
    {
        QFETCH(QByteArray, json);
        QByteArray body = "{'metadata':{},'files':[{'name':'reel 1.mp4'}]," + json + '}';
        const auto details = ArchiveParser::parseDetails(body.replace('\'', '"'), "abc");
        QStringList addresses;
        for (const QUrl &url : details->alternatives(details->files.first()))
            addresses << url.toString(QUrl::FullyEncoded);
        QTEST(addresses, "addresses");
    }

    void keepsNoMoreThanItNeeds()
    {
        const QByteArray most(65'536, 'x');
        const QByteArray over = most + 'y';
        const MediaItem item =
            only(R"({"identifier":"a","title":")" + over + R"(","description":"<b>)" + over +
                 R"(</b>","subject":[)" + QByteArray(R"("s",)").repeated(100) + R"("t"]})");
        QCOMPARE(item.title, most);
        QCOMPARE(item.summary, most);
        QCOMPARE(item.subjects, QStringList(100, "s"));
        QCOMPARE(
            detailsOf(R"({"subject":")" + QByteArray("s;").repeated(101) + R"("})").item.subjects,
            QStringList(100, "s"));
        // A shorter name would be another file's, and another item's.
        QCOMPARE(names(detailsOf("{}", R"([{"name":")" + over + R"("},{"name":")" + most + R"("}])")
                           .files),
                 QStringList(most));
        QCOMPARE(ArchiveParser::parseSearch(page(R"({"identifier":")" + over + R"("})")).size(), 0);
    }

    void filesAreOrdered()
    {
        const auto files = detailsOf("{}", R"([{"name":"plain"},{"format":"h.264"},
            {"name":"ogg","format":"Ogg Video","size":"900000000"},
            {"name":"mpeg4","format":"MPEG4","size":50000000},
            {"name":"plain too","size":"9223372036854775808"},
            {"name":"h264 a","format":"h.264 IA","size":"700000000"},
            {"name":"h264 b","format":["H.264"],"size":"700000000"},
            {"name":"mpeg2","format":"MPEG4 too","size":"800000000"}])")
                               .files;
        QCOMPARE(names(files),
                 QStringList({"h264 a", "h264 b", "mpeg4", "ogg", "mpeg2", "plain", "plain too"}));
        QCOMPARE(files.at(2).size, 50000000);
        QVERIFY(!files.last().size);
        QCOMPARE(names(detailsOf("{}", R"([{"name":"a"},"b"])").files), QStringList());
    }

    /// MD5 before SHA-1; none that is not just as many hexadecimal digits, and none of the list
    /// that holds itself.
    void checksums()
    {
        const QByteArray md5(32, 'a');
        const QByteArray sha1(40, 'B');
        QJsonArray array;
        const auto add = [&](const char *name, const QJsonValue &one, const QByteArray &other) {
            array.append(
                QJsonObject{{"name", name}, {"md5", one}, {"sha1", QString::fromLatin1(other)}});
        };
        const QString text = QString::fromLatin1(md5);
        add("both", text, sha1);
        add("sha1", text.chopped(1) + 'g', sha1);
        add("long", text + "aa", sha1 + 'B');
        add("number", 12, "");
        add("x_files.xml", text, sha1);
        const auto files = detailsOf("{}", QJsonDocument(array).toJson()).files;
        QList<QByteArray> digests;
        for (const ArchiveFile &each : files)
            digests.append(each.checksum.digest.toHex());
        QCOMPARE(digests, (QList<QByteArray>{md5, sha1.toLower(), "", "", ""}));
        QCOMPARE(files.at(1).checksum.algorithm, QCryptographicHash::Sha1);
    }

    void equalFilesKeepTheirOrder()
    {
        QJsonArray files;
        for (int i = 0; i < 200; ++i)
            files.append(QJsonObject{{"name", QString::number(i)}, {"size", i % 2}});
        const auto found = detailsOf("{}", QJsonDocument(files).toJson()).files;
        QCOMPARE(found.size(), 200);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(found.at(i).name, QString::number(2 * i + 1));
            QCOMPARE(found.at(100 + i).name, QString::number(2 * i));
        }
    }

    void filesByKind()
    {
        ArchiveDetails details;
        for (const char *name :
             {"Movie.MP4", "a.m4v", "clip.mkv", "x.mp4/README", "subs/en.VTT", "film.torrent",
              "other.torrent", "mp4", "b.mov", "c.ogv", "d.srt", "e.mp4.gz"})
            details.files.append({.name = name, .format = {}, .size = {}, .itemRoot = {}});
        QCOMPARE(names(details.playable()), QStringList({"Movie.MP4", "a.m4v", "b.mov"}));
        QCOMPARE(names(details.otherVideos()), QStringList({"clip.mkv", "c.ogv"}));
        QCOMPARE(names(details.subtitles()), QStringList({"subs/en.VTT", "d.srt"}));
        QCOMPARE(details.torrent()->name, "film.torrent");
        QVERIFY(!ArchiveDetails().torrent());
    }
};

QTEST_GUILESS_MAIN(TestArchiveParser)
#include "tst_archiveparser.moc"
