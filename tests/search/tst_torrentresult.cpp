// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/MergeResults.h"
#include "testlib/Table.h"

#include <QTest>

using namespace tavelo;

namespace {

TorrentResult result(const QString &id, const QString &source, std::optional<qint64> seeders = {})
{
    TorrentResult made;
    made.id = id;
    made.title = id + " at " + source;
    made.seeders = seeders;
    made.sources = {source};
    return made;
}

TorrentResult hashed(const QString &hash, const QString &source)
{
    TorrentResult made = result("guid of " + source, source);
    made.infoHash = hash;
    return made;
}

} // namespace

class TestTorrentResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsQualityAndFormat_data()
    {
        const auto row = columns<QString, QString, QString>("title", "quality", "format");
        const QString none = u"\u2014"_qs;
        row("plain", "Film 2019 1080p BluRay x264", "1080p", none);
        row("container", "Film 2019 1080p BluRay [MKV]", "1080p", "mkv");
        row("4K", "Some.Film.4K.HDR.webm", "2160p", "webm");
        row("inside a word", "Bank4kids", "2160p", none);
        row("2160p", "a 2160P b.M4V", "2160p", "m4v");
        row("the first in order counts", "720p and 1080p avi mp4", "1080p", "mp4");
        row("480p", "480p DVDRip", "480p", none);
        row("SD", "Old Film DVDRip XviD avi", "SD", "avi");
        row("HD", "Old Film BRRip mov", "HD", "mov");
        row("720p before brrip", "Old Film BRRip 720p ogv", "720p", "ogv");
        row("nothing", "", none, none);
    }
    void tellsQualityAndFormat()
    {
        QFETCH(QString, title);
        QFETCH(QString, format);
        TorrentResult tested;
        tested.title = title;
        QTEST(tested.quality(), "quality");
        QCOMPARE(tested.format(), format);
        tested.archiveID = "item";
        QCOMPARE(tested.format(), format == u"\u2014" ? "mp4" : format);
    }

    void sortsAbsentNumbersFirst()
    {
        TorrentResult none = result("a", "YTS");
        none.sources = {"YTS", "ApiBay"};
        TorrentResult zero = result("b", "x", 0);
        zero.size = 0;
        QVERIFY(none.sizeSort() < zero.sizeSort());
        QVERIFY(none.seedersSort() < zero.seedersSort());
        QVERIFY(none.leechersSort() < 0);
        QCOMPARE(none.sourceSort(), "ApiBay, YTS");
    }

    void mergesByHashOrId()
    {
        TorrentResult first = hashed("ABC", "Y");
        TorrentResult second = hashed("abc", "A");
        second.magnet = "magnet:?second";
        second.size = 5;
        second.year = "1999";
        second.seeders = 7;
        second.leechers = 9;
        second.torrentURL = QUrl("http://second");
        second.license = "second";
        second.archiveID = "second";
        TorrentResult third = hashed("aBc", "Y");
        third.size = 6;
        third.magnet = "magnet:?third";
        third.pageURL = QUrl("http://p");
        third.torrentURL = QUrl("http://t");
        third.seeders = 3;
        third.leechers = 2;
        // The same text as id and as hash is one key.
        const auto merged = mergeResults({result("z", "1"), first, second, result("z", "2"), third,
                                          result("abc", "0"), hashed("other", "1")});
        QCOMPARE(merged.size(), 3);
        TorrentResult expected = first;
        expected.sources = {"0", "A", "Y"};
        expected.seeders = 7;
        expected.leechers = 9;
        expected.size = 5;
        expected.magnet = "magnet:?second";
        expected.torrentURL = QUrl("http://second");
        expected.pageURL = QUrl("http://p");
        QCOMPARE(merged.at(0).sources, QStringList({"1", "2"}));
        QVERIFY(merged.at(1) == expected);
        QCOMPARE(merged.at(2).infoHash, "other");
        QVERIFY(mergeResults(merged) == merged);
        QVERIFY(mergeResults({}).isEmpty());
    }

    void leavesALoneResultAsItIs()
    {
        TorrentResult odd = result("a", "Y");
        odd.sources = {"Y", "A", "Y"};
        QVERIFY(mergeResults({odd}) == QList<TorrentResult>{odd});
    }
};

QTEST_GUILESS_MAIN(TestTorrentResult)
#include "tst_torrentresult.moc"
