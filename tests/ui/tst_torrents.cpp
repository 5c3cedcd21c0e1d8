// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "TorrentScene.h"
#include "WindowTest.h"

#include "testlib/Table.h"
#include "ui/Clipboard.h"

#include <algorithm>

using namespace tavelo;

namespace {

const QString magnet = "magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef01234567&dn=Reel%20One";
const QString nothingYet = "Enter a search to query your enabled providers in parallel.";

QQuickItem *entry(const Program &program, const QString &placeholder)
{
    for (QQuickItem *item : program.visibleItems()) {
        if (item->property("placeholderText") == placeholder)
            return item;
    }
    return nullptr;
}

QQuickItem *magnetEntry(const Program &program)
{
    return entry(program, "Paste magnet link");
}

void type(Program &program, QQuickItem *into, const QString &text)
{
    program.window()->grabWindow();
    program.clickAt(Program::middleOf(into));
    program.type(text);
}

void searchFor(Program &program, const QString &text)
{
    type(program, entry(program, "Search title or keywords across enabled providers…"), text);
    program.key(Qt::Key_Return);
}

} // namespace

/// The torrent search's inputs, and its table.
class tst_Torrents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutProviders()
    {
        Program program;
        QVERIFY(showSection(program));
        QTRY_VERIFY(program.text(nothingYet));
        const QString hint = "No providers enabled — enable some in Settings.";
        QVERIFY(!program.text(hint));
        const auto providers = program.state().settings()->providers();
        for (const ProviderConfig &config : providers)
            program.state().registry()->setEnabled(config.id, false);
        QTRY_VERIFY(program.text(hint));

        searchFor(program, "reel");
        QTRY_VERIFY(program.text("No results."));
        QCOMPARE(program.item("StatusChip"), nullptr);
        QCOMPARE(program.state().aggregator()->lastQuery(), "reel");
        program.state().settings()->setProviders(providers);
        QTRY_VERIFY(!program.text(hint));
    }

    void asksEveryProvider()
    {
        Program program;
        const QString base = Program::server().base();
        Program::server().serve("/fast/q.php",
                                {.body = R"([{"name":"Reel 720p","seeders":"4","size":"1500",
            "info_hash":"0123456789ABCDEF0123456789ABCDEF01234567"}])"});
        Program::server().serve("/down/q.php", {.status = 503});
        Program::server().serve("/slow/q.php", {.silent = true});
        QVERIFY(showSection(program));
        QList<ProviderConfig> providers;
        for (const QString name : {"fast", "down", "slow"})
            providers << ProviderConfig::create(name, ProviderKind::ApiBay, base + "/" + name);
        const auto before = program.state().settings()->providers();
        program.state().settings()->setProviders(providers.sliced(2));
        searchFor(program, "two words");
        QTRY_VERIFY(program.text("Searching…"));
        QVERIFY(program.text("slow"));
        QVERIFY(program.item("Spinner"));

        program.state().settings()->setProviders(providers);
        QTest::keyClick(program.window(), Qt::Key_Return, Qt::ControlModifier);
        QTRY_VERIFY(program.text("fast: 1"));
        QTRY_VERIFY(program.text("down: HTTP 503"));
        QTRY_VERIFY(program.text("Reel 720p"));
        QVERIFY(program.text("slow"));
        QVERIFY(program.text("1 of 1 results"));
        const auto asked = [](const HttpService::Request &request) {
            return request.target.startsWith("/fast/q.php?") &&
                   request.target.contains("q=two%20words");
        };
        QVERIFY(std::ranges::any_of(Program::server().requests(), asked));

        searchFor(program, "\b\b\b\b\b\b\b\b\b\b\b\b");
        QVERIFY(program.state().aggregator()->isSearching());
        QCOMPARE(program.state().aggregator()->lastQuery(), "two words");
        program.state().settings()->setProviders(before);
    }

    void magnetIsPastedByMenu()
    {
        Program program;
        QVERIFY(showSection(program));
        Clipboard().setText(magnet);
        QQuickItem *field = magnetEntry(program);
        QTest::mouseClick(program.window(), Qt::RightButton, {}, Program::middleOf(field));
        QTRY_VERIFY(program.control("Paste"));
        QVERIFY(!program.control("Copy")->isEnabled());
        QVERIFY(program.click("Paste"));
        QTRY_COMPARE(field->property("text"), magnet);
        QTRY_VERIFY(field->hasActiveFocus());
        program.key(Qt::Key_Menu);
        QVERIFY(program.click("Select All"));
        QTRY_COMPARE(field->property("selectedText"), magnet);
        QTRY_VERIFY(!program.control("Paste"));
        program.key(Qt::Key_Menu);
        QVERIFY(program.click("Cut"));
        QTRY_COMPARE(field->property("text"), "");
    }

    void magnetField_data()
    {
        const auto row = columns<QString, bool>("text", "accepted");
        row("a link", magnet, true);
        row("spaces", "  ", false);
        row("words", "reel one", false);
    }

    void magnetField()
    {
        QFETCH(QString, text);
        QFETCH(bool, accepted);
        Program program;
        QVERIFY(showSection(program));
        QTRY_VERIFY(program.control("Inspect"));
        QVERIFY(!program.control("Inspect")->isEnabled());
        type(program, magnetEntry(program), text);
        QVERIFY(program.control("Inspect")->isEnabled());
        QVERIFY(program.click("Inspect"));
        QCOMPARE(magnetEntry(program)->property("text").toString(), "");
        QCOMPARE(program.state().inspector().has_value(), accepted);
        QCOMPARE(program.state().notice().has_value(), !accepted);
    }

    void sortsAndFilters()
    {
        Program program;
        QList<TorrentResult> found = reels(3);
        found[1].title = "Reel 1 1080p";
        found += reels(2, "B");
        QVERIFY(showResults(program, found));
        QVERIFY(program.click("Title"));
        QTRY_COMPARE(program.control("Title")->property("leading").toBool(), true);
        const auto y = [&](const QString &title) {
            const QQuickItem *text = program.text(title);
            return text ? Program::middleOf(text).y() : -1;
        };
        QTRY_VERIFY(y("Reel 1 1080p") < y("Reel 2"));
        QVERIFY(program.click("Title"));
        QTRY_VERIFY(y("Reel 1 1080p") > y("Reel 2"));

        QVERIFY(program.click("Resolution"));
        QVERIFY(program.click("1080p"));
        QTRY_VERIFY(program.text("1 of 5 results"));
        QVERIFY(!program.text("Reel 2"));
        QVERIFY(program.click("Sources"));
        QVERIFY(program.click("✓ A"));
        QTRY_VERIFY(program.text("0 of 5 results"));
        QVERIFY(program.control("Title"));
        QVERIFY(!program.text("No results."));

        // Another visit begins anew, with what was found.
        QVERIFY(program.click("Library"));
        QVERIFY(program.click("Torrent Search"));
        QTRY_VERIFY(program.text("5 of 5 results"));
        QVERIFY(!program.control("Title")->property("leading").toBool());
        QVERIFY(program.control("Seeds")->property("leading").toBool());
    }

    void walkedByKeys()
    {
        Program program;
        QVERIFY(showResults(program, reels(10'000)));
        int rows = 0;
        for (const QQuickItem *item : program.visibleItems())
            rows += QByteArray(item->metaObject()->className()).startsWith("ResultRow_");
        QVERIFY2(rows < 60, qPrintable(QString::number(rows)));

        program.window()->grabWindow();
        program.clickAt(Program::middleOf(program.text("Reel 1")));
        QCOMPARE(currentRow(program), 1);
        for (const auto &[key, row] :
             {std::pair{Qt::Key_Down, 2}, std::pair{Qt::Key_Up, 1}, std::pair{Qt::Key_End, 9'999},
              std::pair{Qt::Key_Down, 9'999}, std::pair{Qt::Key_Home, 0},
              std::pair{Qt::Key_Up, 0}}) {
            program.key(key);
            QCOMPARE(currentRow(program), row);
            QTRY_VERIFY(program.text(QStringLiteral("Reel %1").arg(row)));
        }
        program.key(Qt::Key_PageDown);
        const int page = currentRow(program);
        QVERIFY(page > 5 && page < 60);
        program.key(Qt::Key_PageUp);
        QCOMPARE(currentRow(program), 0);
    }

    void streamKeepsThePlace()
    {
        Program program;
        QVERIFY(showSection(program));
        const auto first = std::make_shared<HeldProvider>("A");
        const auto second = std::make_shared<HeldProvider>("B");
        program.state().aggregator()->search("reel", {first, second});
        first->answer(reels(2'000));
        QTRY_VERIFY(program.text("2000 of 2000 results"));
        program.window()->grabWindow();
        program.clickAt(Program::middleOf(program.text("Reel 0")));
        for (int i = 0; i < 40; ++i)
            program.key(Qt::Key_Down);
        QTRY_VERIFY(program.text("Reel 40"));
        program.window()->grabWindow();
        const QPoint before = Program::middleOf(program.text("Reel 40"));

        QList<TorrentResult> better = reels(2'000, "B");
        for (TorrentResult &result : better) {
            result.title += " again";
            *result.seeders += 50'000;
        }
        second->answer(better);
        QTRY_VERIFY(program.text("4000 of 4000 results"));
        QCOMPARE(currentRow(program), 2'040);
        QTRY_VERIFY(program.text("Reel 40"));
        program.window()->grabWindow();
        QCOMPARE(Program::middleOf(program.text("Reel 40")), before);
        program.key(Qt::Key_Down);
        QCOMPARE(currentRow(program), 2'041);
    }

    void columnsAreResized()
    {
        Program program;
        QVERIFY(showResults(program, reels(3)));
        program.window()->grabWindow();
        const QQuickItem *size = program.control("Size");
        const QQuickItem *title = program.control("Title");
        const qreal wide = title->width();
        QCOMPARE(size->width(), 80);
        const QPoint edge = size->mapToScene({-4, size->height() / 2}).toPoint();
        QTest::mousePress(program.window(), Qt::LeftButton, {}, edge);
        for (int step = 1; step <= 4; ++step)
            QTest::mouseMove(program.window(), edge - QPoint(10 * step, 0));
        QTest::mouseRelease(program.window(), Qt::LeftButton, {}, edge - QPoint(40, 0));
        QTRY_COMPARE(size->width(), 120);
        QCOMPARE(title->width(), wide - 40);
        QVERIFY(!size->property("leading").toBool());
        QVERIFY(program.tabTo("Quality"));
        const qreal quality = program.window()->activeFocusItem()->width();
        program.key(Qt::Key_Left, Qt::ShiftModifier);
        QTRY_COMPARE(program.window()->activeFocusItem()->width(), quality + 8);
        program.window()->resize(980, 640);
        QTRY_VERIFY(title->width() < wide - 40);
        QVERIFY(title->width() >= 140);
    }
};

TAVELO_WINDOW_TEST(tst_Torrents)
#include "tst_torrents.moc"
