// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"
#include "testlib/Table.h"

#include <QAccessible>
#include <QTest>

using namespace std::chrono_literals;
using namespace tavelo;

class tst_Screens : public QObject
{
    Q_OBJECT

private:
    static constexpr int patience = 10'000; // milliseconds

private Q_SLOTS:
    void homeFailsAndRecovers()
    {
        Program program;
        Program::server().at("/advancedsearch.php").status = 503;
        QVERIFY(program.show());
        const QString message = "Couldn't reach Orvella: HTTP 503";
        QTRY_VERIFY_WITH_TIMEOUT(program.text(message), patience);
        QVERIFY(!program.text("Featured Public-Domain Films"));
        QVERIFY(!program.text("Search Suggestions"));

        Program::server().at("/advancedsearch.php").status = 200;
        QVERIFY(program.click("Retry"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Popular on Orvella This Week"), patience);
        QVERIFY(program.text("Featured Public-Domain Films"));
        QVERIFY(!program.text(message));
        QVERIFY(!program.text("Loading catalog…"));
        QTRY_VERIFY(program.control("noir"));
    }

    void homeSaysThatItLoads()
    {
        Program program;
        Program::server().at("/advancedsearch.php").delay = 300ms;
        QVERIFY(program.show());
        QTRY_VERIFY(program.text("Loading catalog…"));
    }

    void shelfIsWalkedByKeys()
    {
        Program program;
        QVERIFY(program.show());
        for (const char *shelf : {"Featured Public-Domain Films", "Popular on Orvella This Week"})
            QTRY_VERIFY_WITH_TIMEOUT(program.text(shelf), patience);
        QTRY_VERIFY(program.countControls("Film 2") == 2);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right,
                                  Qt::Key_Left, Qt::Key_Return})
            program.key(key);
        QVERIFY(program.state().selectedItem());
        QCOMPARE(program.state().selectedItem()->id, "film1");

        const QQuickItem *before = program.window()->activeFocusItem();
        QTRY_VERIFY(program.item("ItemDetailView"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.item("ItemDetailView"));
        QVERIFY(!program.state().selectedItem());
        program.key(Qt::Key_Right);
        program.key(Qt::Key_Return);
        QVERIFY(program.state().selectedItem());
        QCOMPARE(program.state().selectedItem()->id, "film2");
        QVERIFY(before);
    }

    void filmIsPlayedByKeysAlone()
    {
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Film 0"), patience);
        program.keys({Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        QTRY_VERIFY(program.item("ItemDetailView"));
        QTRY_VERIFY(program.control("Play"));
        program.key(Qt::Key_Return);
        QTRY_VERIFY(program.state().showPlayer());
        QTRY_VERIFY_WITH_TIMEOUT(program.player().duration() > 0, patience);
        QVERIFY(!program.state().selectedItem());
    }

    void shelfMakesOnlyTheCardsItShows()
    {
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Film 0"), patience);
        QVERIFY(program.countControls("Film 23") == 0);
        for (int i = 0; i < 2; ++i)
            program.key(Qt::Key_Down);
        for (int i = 0; i < 23; ++i)
            program.key(Qt::Key_Right);
        QTRY_VERIFY(program.countControls("Film 23") == 1);
    }

    void wheelOverAShelf()
    {
        Program program;
        QVERIFY(program.show());
        program.window()->resize(980, 640);
        QTRY_VERIFY_WITH_TIMEOUT(program.item("FilmShelf"), patience);
        const auto *list = program.item("FilmShelf")->property("list").value<QQuickItem *>();
        const auto along = [&] { return list->property("contentX").toReal(); };
        const auto down = [&] { return program.item("HomeScreen")->property("contentY").toReal(); };
        const auto *home = program.item("HomeScreen");
        QTRY_VERIFY(home->property("contentHeight").toReal() > home->height() + 40);
        const qreal start = along();
        const QPoint card = Program::middleOf(list);

        program.wheel(card, Qt::NoModifier);
        QTRY_VERIFY(down() > 20);
        QCOMPARE(along(), start);
        program.wheel(card, Qt::ShiftModifier);
        QTRY_VERIFY(along() > start + 20);
    }

    void filesOfAnItem_data()
    {
        const auto row = columns<QStringList, bool, int, int, QStringList, QStringList>(
            "files", "restricted", "playButtons", "saveButtons", "shown", "hidden");
        const QString noStream =
            "No Mac-compatible stream (MP4/M4V/MOV) is available. Other formats "
            "can be downloaded.";
        const QString noVideo = "No video files found in this item.";
        const QString locked = "This item is access-restricted and can't be streamed.";
        const QString others = "Other video files (download only)";
        row("two films, three subtitles", {"a.mp4", "b.mov", "a.srt", "b.vtt", "c.srt"}, false, 2,
            2,
            {"a.mp4", "b.mov", "h.264 · 1.5 MB",
             "3 subtitle file(s) will be available in the player."},
            {others, locked, noVideo});
        row("nothing that plays here", {"a.ogv"}, false, 0, 1, {noStream, others, "a.ogv"},
            {"Play", noVideo});
        row("no video", {"a.mp3"}, false, 0, 0, {noVideo}, {"Play", others, noStream, "a.mp3"});
        row("restricted", {"a.mp4", "b.ogv"}, true, 0, 0, {locked, "Play", "a.mp4"},
            {others, "b.ogv"});
    }

    void filesOfAnItem()
    {
        QFETCH(QStringList, files);
        QFETCH(bool, restricted);
        QFETCH(QStringList, shown);
        QFETCH(QStringList, hidden);
        Program program;
        Program::serveFiles("film0", files, restricted);
        QVERIFY(program.show());
        QVERIFY(program.click("Film 0"));
        for (const QString &wording : shown)
            QTRY_VERIFY2_WITH_TIMEOUT(program.text(wording), qPrintable(wording), patience);
        for (const QString &wording : hidden)
            QVERIFY2(!program.text(wording), qPrintable(wording));
        QTEST(program.countControls("Play"), "playButtons");
        QTEST(program.countControls("Save to Downloads"), "saveButtons");
        QVERIFY(!program.text("Inspecting files…"));
    }

    void aThousandFiles()
    {
        QStringList names;
        for (int i = 0; i < 1000; ++i)
            names.append(QString("reel%1.mp4").arg(i, 3, 10, QLatin1Char('0')));
        Program program;
        Program::serveFiles("film0", names);
        QVERIFY(program.show());
        QVERIFY(program.click("Film 0"));
        QTRY_VERIFY(program.control("Play"));
        QVERIFY2(program.countControls("Play") < 40, "rows that nobody sees");
        program.keys({Qt::Key_End, Qt::Key_Home, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        QTRY_VERIFY(program.state().playback()->nowPlaying());
        QCOMPARE(program.player().currentURL()->fileName(), names[1]);
    }

    void filesThatDoNotCome()
    {
        Program program;
        Program::server().at("/metadata/film0").status = 500;
        QVERIFY(program.show());
        QVERIFY(program.click("Film 0"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Couldn't load item files: HTTP 500"), patience);
    }

    void closingTheSheetEndsItsRequest()
    {
        Program program;
        Program::server().at("/metadata/film0").silent = true;
        QVERIFY(program.show());
        QVERIFY(program.click("Film 0"));
        QTRY_VERIFY(program.text("Inspecting files…"));
        QTRY_COMPARE(Program::server().openRequests(), 1);
        QVERIFY(program.click("Close"));
        QTRY_COMPARE(Program::server().openRequests(), 0);
        QVERIFY(!program.state().selectedItem());
    }

    void noticeLiesOverTheSheet()
    {
        Program program;
        QVERIFY(program.show());
        QVERIFY(program.click("Film 0"));
        QTRY_VERIFY(program.item("ItemDetailView"));
        program.state().setNotice("There is no room left.");
        QTRY_VERIFY(program.text("There is no room left."));
        QVERIFY(program.click("OK"));
        QTRY_VERIFY(!program.state().notice());
        QTRY_VERIFY(!program.text("There is no room left."));
        QVERIFY(program.state().selectedItem());
        program.state().setNotice("Once more.");
        QTRY_VERIFY(program.text("Once more."));
        program.key(Qt::Key_Return);
        QTRY_VERIFY(!program.state().notice());
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.state().selectedItem());
    }

    void sidebarChooses()
    {
        Program program;
        QVERIFY(program.startFilm());
        QVERIFY(program.click("Library"));
        QCOMPARE(program.state().sectionName(), "Library");
        QVERIFY(!program.state().showPlayer());
        QTRY_VERIFY(program.control("Close player"));
        QVERIFY(program.player().isPlaying());
        for (const auto &[key, section] : {std::pair{Qt::Key_Down, "Downloads"},
                                           {Qt::Key_Return, "Downloads"},
                                           {Qt::Key_Up, "Library"},
                                           {Qt::Key_Up, "Torrent Search"}}) {
            program.state().setShowPlayer(true); // whose own keys up and down are
            QTRY_VERIFY(program.item("PlayerScreen"));
            program.item("Sidebar")->childItems().first()->forceActiveFocus();
            program.key(key);
            QCOMPARE(program.state().sectionName(), section);
            QVERIFY(!program.state().showPlayer());
            QCOMPARE(program.player().volume(), 1.0F);
        }

        QVERIFY(program.click("Close player"));
        QTRY_VERIFY(!program.item("MiniPlayer"));
        QVERIFY(!program.player().isPlaying());
    }

    void sidebarKeepsItsBounds_data()
    {
        const auto row = columns<int, int>("by", "width");
        row("wider", 30, 220);
        row("too wide", 400, 240);
        row("too narrow", -150, 170);
    }

    void sidebarKeepsItsBounds()
    {
        QFETCH(int, by);
        Program program;
        QVERIFY(program.show());
        QQuickItem *sidebar = program.item("Sidebar");
        QCOMPARE(sidebar->width(), 190);
        const QPoint edge(190, 400);
        QTest::mousePress(program.window(), Qt::LeftButton, {}, edge);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(program.window(), edge + QPoint(by * step / 10, 0));
        QTest::mouseRelease(program.window(), Qt::LeftButton, {}, edge + QPoint(by, 0));
        // The first few pixels tell a drag from a click.
        QFETCH(int, width);
        QVERIFY2(qAbs(sidebar->width() - width) <= 12,
                 qPrintable(QString::number(sidebar->width())));
        QVERIFY(sidebar->width() >= 170 && sidebar->width() <= 240);

        program.item("SidebarDivider")->forceActiveFocus();
        program.keys(QList<Qt::Key>(by > 0 ? 9 : 3, by > 0 ? Qt::Key_Right : Qt::Key_Left));
        QCOMPARE(sidebar->width(), by > 0 ? 240 : 170);
    }

    void textOfStrangersStaysText()
    {
        Program program;
        QVERIFY(program.startFilm());
        QVERIFY(program.click("Back"));
        QVERIFY(program.click("Film 1"));
        QTRY_VERIFY(program.item("ItemDetailView"));
        program.state().setNotice("<b>bold</b>");
        QTRY_VERIFY(program.text("<b>bold</b>"));
        int texts = 0;
        for (const QQuickItem *item : program.visibleItems()) {
            if (!item->inherits("QQuickText"))
                continue;
            QVERIFY2(item->property("textFormat").toInt() == Qt::PlainText,
                     qPrintable(item->property("text").toString()));
            ++texts;
        }
        QVERIFY(texts > 40);
    }

    void everyStopHasAName()
    {
        QAccessible::setActive(true);
        Program program;
        QVERIFY(program.startFilm());
        program.key(Qt::Key_Space);
        int stops = 0;
        const auto check = [&] {
            for (QQuickItem *item : program.visibleItems()) {
                QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
                if (!item->activeFocusOnTab() || !item->isEnabled())
                    continue;
                ++stops;
                const char *type = item->metaObject()->className();
                QVERIFY2(face, type);
                QVERIFY2(!face->text(QAccessible::Name).isEmpty(), type);
                QVERIFY2(face->role() != QAccessible::NoRole, type);
            }
        };
        check();
        QVERIFY(program.click("Back"));
        QVERIFY(program.click("Film 1"));
        QTRY_VERIFY(program.control("Play"));
        check();
        QVERIFY(stops > 20);
    }
};

TAVELO_WINDOW_TEST(tst_Screens)
#include "tst_screens.moc"
