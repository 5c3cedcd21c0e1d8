// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/Table.h"
#include "torrent/TorrentMetadata.h"
#include "torrent/TorrentParseError.h"

#include <QCryptographicHash>
#include <QTest>

using namespace tavelo;

namespace {

QByteArray text(const QByteArray &bytes)
{
    return QByteArray::number(bytes.size()) + ":" + bytes;
}

QByteArray number(qint64 value)
{
    return "i" + QByteArray::number(value) + "e";
}

QByteArray torrent(const QByteArray &info, const QByteArray &otherKeys = {})
{
    return "d" + otherKeys + text("info") + "d" + info + "ee";
}

QByteArray files(const QByteArrayList &entries)
{
    QByteArray all = text("files") + "l";
    for (const QByteArray &entry : entries)
        all += "d" + entry + "e";
    return all + "e";
}

QStringList linesOf(const TorrentInfo &info)
{
    QStringList lines;
    for (const TorrentFileEntry &file : info.files)
        lines.append(QString("%1 %2").arg(file.path).arg(file.size));
    return lines;
}

} // namespace

class TestMetainfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hashesTheBytesAsTheyStand_data()
    {
        const auto row = columns<QByteArray>("info");
        row("a file", "d6:lengthi5e4:name3:fooe");
        row("the same in another order", "d4:name3:foo6:lengthi5ee");
        row("odd numbers stay odd", "d6:lengthi+005e4:name03:fooe");
        row("empty", "de");
    }
    void hashesTheBytesAsTheyStand()
    {
        QFETCH(QByteArray, info);
        const auto read = TorrentMetadata::parseTorrent("d4:info" + info + "etrailing");
        QVERIFY(read);
        const QByteArray expected = QCryptographicHash::hash(info, QCryptographicHash::Sha1);
        QCOMPARE(read->infoHash, QString(expected.toHex()));
        QVERIFY(read->magnet.startsWith("magnet:?xt=urn%3Abtih%3A" + read->infoHash + "&dn="));
        QVERIFY(!read->fileURL);
    }

    void readsNameAndFiles_data()
    {
        const auto row = columns<QByteArray, QString, QStringList>("info", "name", "lines");
        const QByteArray show = text("name") + text("Show");
        const QByteArray length = text("length");
        const QByteArray path = text("path");
        const QByteArray path8 = text("path.utf-8");
        const auto one = length + number(1);

        row("one file", show + length + number(5), "Show", {"Show 5"});
        row("nothing", "", "Unnamed torrent", {});
        row("name of another kind", text("name") + number(1), "Unnamed torrent", {});
        row("empty name", text("name") + text(""), "", {});
        row("utf-8 name wins", text("name.utf-8") + text("\xC3\x9C") + show, "Ü", {});
        row("utf-8 name of another kind", text("name.utf-8") + number(1) + show, "Show", {});
        row("length of another kind", show + length + text("5"), "Show", {});
        row("several",
            show + files({one + path + "l2:S16:e1.mkve", length + number(2) + path + "l5:a.srte"}),
            "Show", {"Show/S1/e1.mkv 1", "Show/a.srt 2"});
        row("no list: as one file", show + text("files") + number(1) + length + number(7), "Show",
            {"Show 7"});
        row("empty list: no file", show + files({}) + length + number(7), "Show", {});
        row("entries without a length", show + files({path + "l1:ae", length + text("1"), one}),
            "Show", {"Show 1"});
        row("entries of another kind", show + text("files") + "l" + number(1) + text("x") + "lee",
            "Show", {});
        row("empty path", show + files({one + path + "le"}), "Show", {"Show 1"});
        row("utf-8 path wins, even no list",
            show + files({one + path + "l1:ae" + path8 + "l1:be",
                          one + path8 + number(1) + path + "l1:ae"}),
            "Show", {"Show/b 1", "Show 1"});
        row("components of other kinds, empty ones, dots",
            show + files({one + path + "l" + number(1) + text("a") + text("") + text("..") + "e"}),
            "Show", {"Show/a//.. 1"});
        row("negative size", show + files({length + number(-3)}), "Show", {"Show -3"});
    }
    void readsNameAndFiles()
    {
        QFETCH(QByteArray, info);
        const auto read = TorrentMetadata::parseTorrent(torrent(info));
        QVERIFY(read);
        QTEST(read->name, "name");
        QTEST(linesOf(*read), "lines");
    }

    void collectsTrackers_data()
    {
        const auto row = columns<QByteArray, QStringList>("keys", "expected");
        const QByteArray announceList = text("announce-list");
        row("none", QByteArray(), QStringList());
        row("sorted, once each", text("announce") + text("c") + announceList + "ll1:b1:cel1:aee",
            {"a", "b", "c"});
        row("other kinds",
            text("announce") + number(1) + announceList + "l1:xd1:kl1:zeel1:b" + number(1) + "ee",
            {"b"});
        row("list of another kind", announceList + text("x"), QStringList());
    }
    void collectsTrackers()
    {
        QFETCH(QByteArray, keys);
        const auto read = TorrentMetadata::parseTorrent(torrent("", keys));
        QVERIFY(read);
        QTEST(read->trackers, "expected");
    }

    void refuses_data()
    {
        const auto row = columns<QByteArray>("data");
        for (const char *data : {"", "le", "i1e", "de", "d4:infoi1ee", "d4:info2:dee", "d4:infolee",
                                 "d4:infod1:aee", "<html></html>", "d1:xd4:infodeee"})
            row(data, QByteArray(data));
    }
    void refuses()
    {
        QFETCH(QByteArray, data);
        const auto read = TorrentMetadata::parseTorrent(data);
        QVERIFY(!read);
        QCOMPARE(read.error().text, "Not a valid .torrent file");
    }

    void refusesAFileThatSwells()
    {
        QByteArrayList entries;
        for (int i = 0; i < 4000; ++i)
            entries.append(text("length") + number(1));
        const QByteArray name = text("name") + text(QByteArray(40'000, 'n'));
        QVERIFY(!TorrentMetadata::parseTorrent(torrent(files(entries) + name)));
        QVERIFY(TorrentMetadata::parseTorrent(torrent(files(entries) + text("name") + text("n"))));
    }

    void sumsWithoutOverflow()
    {
        constexpr qint64 most = std::numeric_limits<qint64>::max();
        constexpr qint64 least = std::numeric_limits<qint64>::min();
        const auto sum = [](const QList<qint64> &sizes) {
            TorrentInfo info;
            for (const qint64 size : sizes)
                info.files.append({"x", size});
            return info.totalSize();
        };
        QCOMPARE(sum({}), 0);
        QCOMPARE(sum({5, -2, 7}), 10);
        QCOMPARE(sum({most, most}), most);
        QCOMPARE(sum({least, -1}), least);
    }
};

QTEST_GUILESS_MAIN(TestMetainfo)
#include "tst_metainfo.moc"
