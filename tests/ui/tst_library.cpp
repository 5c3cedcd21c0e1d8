// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"

#include "platform/files/StandardFolders.h"
#include "testlib/Table.h"

#include <QDir>

using namespace tavelo;

namespace {

/// Reel 1 is the latest.
void record(Program &program, int count)
{
    for (int number = count; number > 0; --number)
        program.state().library()->record(Program::watched(number, number == 1 ? 60 : 5, 3'600));
}

} // namespace

class tst_Library : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Program::server(); } // which puts the folders in their place
    void init() { QDir(StandardFolders::movies()).removeRecursively(); }

    void emptyLibrary()
    {
        Program program;
        QVERIFY(program.show("Library"));
        QTRY_VERIFY(program.text("Nothing watched yet."));
        QVERIFY(program.text(
            "Nothing saved yet. Download a file from an Orvella item to keep it here."));
        QVERIFY(!program.control("Clear History"));
        program.keys({Qt::Key_Tab, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Return});
        record(program, 1);
        QTRY_VERIFY(program.text("1:00 / 1:00:00"));
        QVERIFY(program.control("Resume"));
        QVERIFY(!program.text("Nothing watched yet."));
        QVERIFY(program.click("Clear History"));
        QTRY_VERIFY(program.text("Nothing watched yet."));
        QVERIFY(!program.control("Clear History"));
    }

    void libraryRemoves_data() { Program::mouseAndKeys(); }
    void libraryRemoves()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(program.show("Library"));
        record(program, 3);
        const auto left = [&] {
            QStringList titles;
            for (const HistoryEntry &entry : program.state().library()->history())
                titles.append(entry.title);
            return titles;
        };
        QTRY_VERIFY(program.control("Remove Reel 2 from history"));
        if (byKeys)
            program.keys({Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return});
        else
            QVERIFY(program.click("Remove Reel 2 from history"));
        QTRY_COMPARE(left(), (QStringList{"Reel 1", "Reel 3"}));
        QTRY_VERIFY(!program.control("Remove Reel 2 from history"));
        if (!byKeys)
            return;
        program.key(Qt::Key_Delete);
        QTRY_COMPARE(left(), QStringList{"Reel 1"});
        QTRY_COMPARE(program.countControls("Play"), 0);
        program.keys({Qt::Key_Down, Qt::Key_Delete});
        QTRY_VERIFY(program.text("Nothing watched yet."));
        program.key(Qt::Key_Backtab);
        QCOMPARE(program.focusText(), "Menu"); // the sidebar's last
    }

    void libraryPlays_data()
    {
        const auto row = columns<QString, QString>("button", "title");
        row("saved", "Play", "my film");
        row("history", "Resume", "Reel 1");
    }
    void libraryPlays()
    {
        QFETCH(QString, button);
        Program program;
        QVERIFY(program.show("Library"));
        record(program, 1);
        QVERIFY(QDir().mkpath(StandardFolders::movies()));
        QVERIFY(
            QFile::copy(TAVELO_CLIPS "/counted.mp4", StandardFolders::movies() + "/my film.mp4"));
        QVERIFY(!program.text("my film"));
        QVERIFY(program.click("Downloads")); // the folder is read when the screen is shown
        QVERIFY(program.click("Library"));
        QTRY_VERIFY(program.text("my film"));
        QVERIFY(program.click(button));
        QVERIFY(program.state().showPlayer());
        QVERIFY(program.state().playback()->nowPlaying());
        QTEST(program.state().playback()->nowPlaying()->title, "title");
    }

    // Two hundred films cost what is seen of them, and the keys reach them all.
    void longHistory()
    {
        Program program;
        QVERIFY(program.show());
        record(program, 200);
        QVERIFY(program.click("Library"));
        QTRY_VERIFY(program.text("Reel 1"));
        QVERIFY(program.countControls("Play") < 40);
        QVERIFY(!program.text("Reel 200"));
        program.keys(QList<Qt::Key>(200, Qt::Key_Down));
        QTRY_VERIFY(program.text("Reel 200"));
        const QQuickItem *last = program.text("Reel 200");
        QTRY_VERIFY(Program::middleOf(last).y() < program.window()->height());
        QVERIFY(!program.text("Reel 1"));
    }

    void positionsChangeInPlace()
    {
        Program program;
        QVERIFY(program.show("Library"));
        record(program, 3);
        QTRY_VERIFY(program.text("1:00 / 1:00:00"));
        const QPointer<QQuickItem> row = program.text("Reel 1");
        program.state().library()->updateProgress("reel1|reel.mp4", 65, 3'600);
        QTRY_VERIFY(program.text("1:05 / 1:00:00"));
        QCOMPARE(program.text("Reel 1"), row.data());
    }
};

TAVELO_WINDOW_TEST(tst_Library)
#include "tst_library.moc"
