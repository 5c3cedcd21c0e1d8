// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "testlib/Table.h"
#include "ui/ProviderChip.h"
#include "ui/TorrentAction.h"
#include "ui/TorrentInspectorModel.h"
#include "ui/TorrentResultModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace tavelo;

namespace {

constexpr qint64 gigabytes = 1'073'741'824;

/// A torrent of that title and those sources, "A B"; its id is its title.
TorrentResult result(const QString &title, const QString &sources = "A",
                     std::optional<qint64> size = {}, std::optional<qint64> seeders = {})
{
    TorrentResult made;
    made.id = title;
    made.title = title;
    made.sources = sources.split(' ');
    made.size = size;
    made.seeders = seeders;
    return made;
}

/// One letter a torrent, with its seeders: "a5 b3".
TorrentRows seeded(const QString &text)
{
    QList<TorrentResult> results;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts))
        results.append(result(word.left(1), "A", {}, word.mid(1).toLongLong()));
    return TorrentRows::of(results);
}

QString titles(const TorrentResultModel &model)
{
    QStringList titles;
    for (int row = 0; row < model.rowCount(); ++row)
        titles.append(model.index(row).data(TorrentResultModel::TitleRole).toString());
    return titles.join(' ');
}

QStringList cells(const TorrentResult &only)
{
    TorrentResultModel model;
    model.setRows(TorrentRows::of({only}));
    QStringList texts;
    for (const int role : {TorrentResultModel::SizeRole, TorrentResultModel::SeedsRole,
                           TorrentResultModel::SeededRole, TorrentResultModel::PeersRole,
                           TorrentResultModel::QualityRole, TorrentResultModel::FormatRole,
                           TorrentResultModel::SourceRole, TorrentResultModel::LicenceRole})
        texts.append(model.index(0).data(role).toString());
    return texts;
}

TorrentResult catalogueResult(std::optional<QString> license)
{
    TorrentResult made = result("Film");
    made.archiveID = "film";
    made.license = std::move(license);
    return made;
}

} // namespace

class tst_TorrentRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsOfARow_data()
    {
        const auto row = columns<TorrentResult, QStringList>("only", "texts");
        TorrentResult full = result("Film 1080p mkv", "YTS ApiBay", 1'500'000'000, 12);
        full.leechers = 3;
        row("all known", full, {"1.5 GB", "12", "true", "3", "1080p", "mkv", "YTS, ApiBay", ""});
        row("nothing known", result("Film"), {"—", "—", "false", "—", "—", "—", "A", ""});
        row("no seeds, negative size", result("Film", "A", -5, 0),
            {"—", "0", "false", "—", "—", "—", "A", ""});
        row("catalogue", catalogueResult({}),
            {"—", "—", "false", "—", "—", "mp4", "A", "Orvella catalog item · license not stated"});
        row("licensed", catalogueResult("http://l.example"),
            {"—", "—", "false", "—", "—", "mp4", "A", "Licensed: http://l.example"});
    }

    void cellsOfARow()
    {
        QFETCH(TorrentResult, only);
        QTEST(cells(only), "texts");
    }

    void longNamesAreShownCut()
    {
        const QString name(60'000, 'x');
        const QString shown = QString(499, 'x') + u'…';
        TorrentResultModel results;
        results.setRows(TorrentRows::of({result(name)}));
        QCOMPARE(titles(results), shown);
        QCOMPARE(results.resultAt(0).value<TorrentResult>().title, name);
        TorrentInspectorModel inspector;
        inspector.setInfo(QVariant::fromValue(TorrentInfo{name, "ab", {{name, 1}}, {}, {}, {}}));
        QCOMPARE(inspector.name(), shown);
        QCOMPARE(inspector.index(0).data(TorrentInspectorModel::PathRole), shown);
        QCOMPARE(ProviderChip::of({{}, "P", ProviderStatus::Failed{name}}).text, "P: " + shown);
    }

    void filters_data()
    {
        const auto row = columns<TorrentResult, QString, QString, int, QString, bool>(
            "only", "resolution", "format", "maxSizeGB", "hidden", "shown");
        const TorrentResult film = result("Film 720p avi", "ApiBay YTS", 2 * gigabytes);
        row("none", film, "Any", "Any", 0, "", true);
        row("its resolution", film, "720p", "Any", 0, "", true);
        row("another resolution", film, "1080p", "Any", 0, "", false);
        row("unknown resolution", result("Film"), "1080p", "Any", 0, "", false);
        row("its format", film, "Any", "avi", 0, "", true);
        row("another format", film, "Any", "mkv", 0, "", false);
        row("just the limit", film, "Any", "Any", 2, "", true);
        row("a byte more", result("Film", "A", 2 * gigabytes + 1), "Any", "Any", 2, "", false);
        row("unknown size", result("Film"), "Any", "Any", 2, "", true);
        row("one source hidden", film, "Any", "Any", 0, "ApiBay", true);
        row("both hidden", film, "Any", "Any", 0, "YTS ApiBay", false);
        row("its only source hidden", result("Film", "ApiBay"), "Any", "Any", 0, "ApiBay", false);
        row("one fits, one does not", film, "720p", "mkv", 0, "", false);
    }

    void filters()
    {
        QFETCH(TorrentResult, only);
        QFETCH(QString, resolution);
        QFETCH(QString, format);
        QFETCH(int, maxSizeGB);
        QFETCH(QString, hidden);
        QFETCH(bool, shown);
        TorrentResultModel model;
        model.setRows(TorrentRows::of({only, result("Other 720p avi mkv 1080p", "Z")}));
        model.setResolution(resolution);
        model.setFormat(format);
        model.setMaxSizeGB(maxSizeGB);
        for (const QString &name : hidden.split(' ', Qt::SkipEmptyParts))
            model.setSourceShown(name, false);
        QCOMPARE(titles(model).contains(only.title), shown);
        QVERIFY(model.countText().endsWith(" of 2 results"));

        model.setResolution("Any");
        model.setFormat("Any");
        model.setMaxSizeGB(0);
        for (const QString &name : model.hiddenSources())
            model.setSourceShown(name, true);
        QCOMPARE(model.countText(), "2 of 2 results");
    }

    void order_data()
    {
        using enum TorrentSort::Key;
        const auto row = columns<QList<TorrentSort::Key>, QString>("clicks", "shown");
        row("at first, by seeds", {}, "b C d a10 a2");
        row("seeds turned", QList{Seeds}, "a2 a10 d b C");
        row("titles as people sort", QList{Title}, "a2 a10 b C d");
        row("titles turned", QList{Title, Title}, "d C b a10 a2");
        row("sizes, none first", QList{Size}, "a2 C a10 b d");
        row("sizes turned", QList{Size, Size}, "b d a10 C a2");
        row("no peers at all", QList{Peers}, "b C d a10 a2");
        row("sources, sorted each", QList{Source}, "C a10 d b a2");
        row("titles behind sources", QList{Title, Source}, "a10 C d b a2");
    }

    void order()
    {
        QFETCH(QList<TorrentSort::Key>, clicks);
        TorrentResultModel model;
        model.setRows(TorrentRows::of({result("b", "Y X", 20, 7), result("a10", "B A", 10, 5),
                                       result("d", "Q", 20, 6), result("a2", "Z", {}, -2),
                                       result("C", "A B", 0, 7)}));
        for (const TorrentSort::Key key : clicks)
            model.sortBy(key);
        QTEST(titles(model), "shown");
    }

    void sourcesAreNamedOnce()
    {
        TorrentResultModel model;
        model.setRows(TorrentRows::of({result("a", "YTS B"), result("b", "B"), result("c", "A")}));
        QCOMPARE(model.sources(), QStringList({"A", "B", "YTS"}));
        model.setSourceShown("A", false);
        QCOMPARE(model.sources(), QStringList({"A", "B", "YTS"}));
    }

    void rowsFollowTheSearch_data()
    {
        // current: of "c", which is in row 2
        const auto row =
            columns<QString, QString, int, QList<int>>("before", "after", "current", "moves");
        row("more above", "a9 b8 c7 d6", "a9 b8 c7 d6 x9 y8", 4, QList{2});
        row("more below", "a9 b8 c7 d6", "a9 b8 c7 d6 x1", 2, {});
        row("better seeded", "a9 b8 c7 d6", "a9 b8 c99 d6", 0, QList{-2});
        row("fewer above", "a9 b8 c7 d6", "b8 c7", 1, QList{-1});
        row("gone", "a9 b8 c7 d6", "a9 d6", -1, {});
        row("a new search", "a9 b8 c7", "", -1, {});
    }

    void rowsFollowTheSearch()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QList<int>, moves);
        TorrentResultModel model;
        const QAbstractItemModelTester tester(&model);
        model.setRows(seeded(before));
        model.setCurrentRow(2);
        model.setHeldRow(2);
        const QSignalSpy moved(&model, &TorrentResultModel::heldRowMoved);
        const QSignalSpy resets(&model, &TorrentResultModel::modelReset);
        model.setRows(seeded(after));
        QTEST(model.currentRow(), "current");
        QCOMPARE(model.rowCount(), after.split(' ', Qt::SkipEmptyParts).size());
        QCOMPARE(moved.size(), moves.size());
        for (qsizetype i = 0; i < moves.size(); ++i)
            QCOMPARE(moved[i][0].toInt(), moves[i]);
        QCOMPARE(resets.size(), 0);
    }

    void currentRowGoesWithItsTorrent()
    {
        TorrentResultModel model;
        const QAbstractItemModelTester tester(&model);
        model.setRows(seeded("a3 b2 c1"));
        model.setCurrentRow(0);
        model.sortBy(TorrentSort::Seeds);
        QCOMPARE(model.currentRow(), 2);
        QCOMPARE(model.resultAt(2).value<TorrentResult>().title, "a");
        model.setSourceShown("A", false);
        QCOMPARE(model.currentRow(), -1);
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.resultAt(0).isValid());
    }

    void actions_data()
    {
        const auto row = columns<TorrentResult, QStringList>("only", "titles");
        const QStringList magnet{"Inspect Magnet", "Open Magnet in Torrent App",
                                 "Copy Magnet Link"};
        TorrentResult found = result("Film");
        row("nothing", found, {});
        found.infoHash = "ab";
        found.magnet = "magnet:?x";
        row("magnet and hash", found, magnet + QStringList{"Copy Info Hash"});
        found.torrentURL = QUrl("http://t.example/a.torrent");
        found.pageURL = QUrl("http://t.example/");
        row("file and page", found,
            magnet + QStringList{"Inspect .torrent File", "Open Source Page", "Copy Info Hash"});
        found.magnet.reset();
        found.infoHash.reset();
        found.torrentURL.reset();
        found.archiveID = "film";
        row("catalogue item", found, {"Details & Play…", "Open Source Page"});
    }

    void actions()
    {
        QFETCH(TorrentResult, only);
        QStringList titles;
        for (const TorrentAction action : actionsFor(only))
            titles.append(titleOf(action));
        QTEST(titles, "titles");
    }

    void chips_data()
    {
        // shown: text, symbol, whether it failed
        const auto row = columns<ProviderStatus, QStringList>("status", "shown");
        const QUuid id = QUuid::createUuid();
        row("asked", ProviderStatus{id, "A"}, {"A", "", "0"});
        row("answered", ProviderStatus{id, "A", ProviderStatus::Ok{0}},
            {"A: 0", "checkmark.circle.fill", "0"});
        row("failed", ProviderStatus{id, "A", ProviderStatus::Failed{"Timed out"}},
            {"A: Timed out", "xmark.octagon.fill", "1"});
    }

    void chips()
    {
        QFETCH(ProviderStatus, status);
        const ProviderChip chip = ProviderChip::of(status);
        QTEST(QStringList({chip.text, chip.symbol, QString::number(chip.failed)}), "shown");
    }

    void inspector_data()
    {
        const auto row =
            columns<QList<TorrentFileEntry>, QString, QString>("files", "summary", "symbols");
        using Files = QList<TorrentFileEntry>;
        row("one film", Files{{"movie.mkv", 1'500'000'000}}, "1 file(s) · 1.5 GB · 1 video",
            "film");
        row("of three kinds", Files{{"T/a.MP4", 1000}, {"T/a.SRT", 500}, {"T/read.nfo", 0}},
            "3 file(s) · 1.5 kB · 1 video", "film captions.bubble doc");
        row("no extension of its own",
            Files{{"T.mkv/read", 1}, {"T/.mkv", 1}, {"mkv", 1}, {"T/a.", 1}},
            "4 file(s) · 4 bytes · 0 video", "doc doc doc doc");
        row("sizes that make no sense", Files{{"a.ts", -7}, {"b.sub", 2}},
            "2 file(s) · — · 1 video", "film captions.bubble");
    }

    void inspector()
    {
        QFETCH(QList<TorrentFileEntry>, files);
        TorrentInspectorModel model;
        const QAbstractItemModelTester tester(&model);
        model.setInfo(
            QVariant::fromValue(TorrentInfo{"T", "ab", files, {"udp://t.example"}, {}, {}}));
        QTEST(model.summary(), "summary");
        QCOMPARE(model.trackersText(), "1 tracker(s)");
        QCOMPARE(model.hashText(), "Info hash: ab");
        QStringList symbols;
        for (int row = 0; row < model.rowCount(); ++row)
            symbols.append(model.index(row).data(TorrentInspectorModel::SymbolRole).toString());
        QTEST(symbols.join(' '), "symbols");
        model.setInfo(QVariant::fromValue(nullptr));
        QCOMPARE(model.rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_TorrentRows)
#include "tst_torrentrows.moc"
