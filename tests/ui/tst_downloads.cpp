// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"

#include "platform/files/StandardFolders.h"

#include <QAccessible>
#include <QDir>

#include <cstdlib>

using namespace tavelo;

namespace {

constexpr int patience = 10'000; // milliseconds
const QByteArray filmPath = "/download/big/film.mp4";

constexpr int rowGap = 6; // pixels between two rows

int rowHeight(const Program &program)
{
    return static_cast<int>(program.item("DownloadRow")->height());
}

QByteArray clip()
{
    QFile file(TAVELO_CLIPS "/counted.mp4");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The film stands still after a third of it until its range is asked for.
void serveFilm()
{
    const QByteArray film = clip();
    HttpService::Answer answer{.body = film, .etag = "\"1\"", .ranges = true};
    Program::server().serveRange(filmPath, answer);
    answer.silentAfter = film.size() / 3;
    Program::server().serve(filmPath, answer);
}

DownloadTask task(Program &program)
{
    return program.state().downloads()->tasks().constFirst();
}

bool startDownload(Program &program, const QByteArray &path = filmPath,
                   const DownloadOrigin &origin = {})
{
    return !program.state().downloads()->start("Big Film", Program::server().url(path), {}, origin);
}

/// Shows the section, empty at first, and then with a film of which a third is there.
bool showPartOfADownload(Program &program)
{
    serveFilm();
    return program.show("Downloads") && program.text("No active downloads.") &&
           startDownload(program) &&
           QTest::qWaitFor([&] { return task(program).progress() > 0.3; }, patience);
}

/// Shows the section with what is not there, latest first: C, B, A.
bool showThree(Program &program)
{
    const auto start = [&](const QString &title) {
        return !program.state().downloads()->start(title, Program::server().url("/no.mp4"), {});
    };
    return program.show("Downloads") && start("A") && start("B") && start("C") &&
           QTest::qWaitFor([&] { return program.countControls("Retry") == 3; }, patience);
}

QStringList titles(Program &program)
{
    QStringList titles;
    for (const DownloadTask &task : program.state().downloads()->tasks())
        titles.append(task.title);
    return titles;
}

/// Drags a row by what stands before its title, over so many others.
void drag(Program &program, const QString &title, int rows)
{
    program.window()->grabWindow(); // each row gets its place
    QPoint at = program.text(title)->mapToScene({-20, 0}).toPoint();
    const QPoint end = at + QPoint(0, rows * (rowHeight(program) + rowGap));
    QTest::mousePress(program.window(), Qt::LeftButton, {}, at);
    while (at != end)
        QTest::mouseMove(program.window(), at += QPoint(0, rows > 0 ? 1 : -1));
    QTest::mouseRelease(program.window(), Qt::LeftButton, {}, at);
}

/// Presses a button of the only row: by the mouse, or as the `column`th by keys.
bool press(Program &program, const QString &button, bool byKeys, int column)
{
    if (!byKeys)
        return program.click(button);
    if (!QTest::qWaitFor([&] { return program.control(button) != nullptr; }, patience))
        return false;
    program.keys({Qt::Key_Down, Qt::Key_Left, Qt::Key_Left});
    program.keys(QList<Qt::Key>(column, Qt::Key_Right));
    program.key(Qt::Key_Return);
    return true;
}

} // namespace

class tst_Downloads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        Program::server(); // which puts the folders in their place
        QAccessible::setActive(true);
    }
    void init() { QDir(StandardFolders::movies()).removeRecursively(); }

    void downloadIsPausedAndResumed_data() { Program::mouseAndKeys(); }
    void downloadIsPausedAndResumed()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(showPartOfADownload(program));
        QTRY_VERIFY(program.item("QQuickProgressBar"));
        const QPointer<QQuickItem> bar = program.item("QQuickProgressBar");
        QVERIFY(!program.text("No active downloads."));
        QTRY_COMPARE(program.item("QQuickProgressBar")->property("value"),
                     task(program).progress());

        QVERIFY(press(program, "Pause", byKeys, 0));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Resume"), patience);
        QTRY_VERIFY(program.text(task(program).status()));
        QVERIFY(task(program).status().endsWith(u" · paused"_qs));
        QCOMPARE(program.item("QQuickProgressBar"), bar.data());

        QVERIFY(press(program, "Resume", byKeys, 0));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Saved to " + StandardFolders::movies()), patience);
        QVERIFY(!program.item("QQuickProgressBar"));
        QFile file(task(program).dest);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), clip());
        QTRY_COMPARE(program.state().downloads()->saved().size(), 1);
        QVERIFY(press(program, "Show in Folder", byKeys, 1));
        QTRY_COMPARE(program.handed(), QStringList("show " + task(program).dest));
        QVERIFY(press(program, "Play", byKeys, 0));
        QVERIFY(program.state().showPlayer());
        QTRY_COMPARE(program.state().playback()->nowPlaying()->title, "film");
    }

    void downloadIsCancelled_data() { Program::mouseAndKeys(); }
    void downloadIsCancelled()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(showPartOfADownload(program));
        QVERIFY(press(program, "Cancel / remove", byKeys, 1));
        QTRY_VERIFY(program.state().downloads()->tasks().isEmpty());
        QTRY_VERIFY(program.text("No active downloads."));
        QTRY_COMPARE(Program::server().openRequests(), 0);
    }

    void damagedDownloadIsTriedAgain_data() { Program::mouseAndKeys(); }
    void damagedDownloadIsTriedAgain()
    {
        QFETCH(bool, byKeys);
        Program program;
        QByteArray damaged = clip();
        damaged[damaged.size() / 2] ^= 1;
        Program::server().serve(filmPath, {.body = damaged, .etag = "\"1\""});
        const Checksum whole{QCryptographicHash::Md5,
                             QCryptographicHash::hash(clip(), QCryptographicHash::Md5)};
        QVERIFY(program.show("Downloads") && startDownload(program, filmPath, {"big", whole}));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Failed: Damaged on the way"), patience);
        QVERIFY(!program.control("Pause") && !program.control("Play"));
        QVERIFY(!QFile::exists(task(program).dest));
        Program::server().at(filmPath).body = clip();
        QVERIFY(press(program, "Retry", byKeys, 0));
        QTRY_VERIFY_WITH_TIMEOUT(
            program.text("Saved to " + StandardFolders::movies() + " · Checked"), patience);
        QTest::mouseMove(program.window(), Program::middleOf(program.text(task(program).status())));
        QTRY_VERIFY(program.text(task(program).tip()));
    }

    void orderIsChanged_data() { Program::mouseAndKeys(); }
    void orderIsChanged()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(showThree(program));
        const auto move = [&](const QString &title, int rows) {
            if (!byKeys)
                return drag(program, title, rows);
            for (int row = 0; row < std::abs(rows); ++row)
                program.key(rows > 0 ? Qt::Key_Down : Qt::Key_Up, Qt::AltModifier);
        };
        program.keys({Qt::Key_Down, Qt::Key_Up, Qt::Key_Up}); // into the list, to its first row
        move("C", 1);
        QCOMPARE(titles(program), QStringList({"B", "C", "A"}));
        move("C", 1);
        QCOMPARE(titles(program), QStringList({"B", "A", "C"}));
        move("C", 1); // there is no further
        QCOMPARE(titles(program), QStringList({"B", "A", "C"}));
        move("C", -2);
        QCOMPARE(titles(program), QStringList({"C", "B", "A"}));
        program.key(Qt::Key_Delete); // still at the row that moved
        QCOMPARE(titles(program), QStringList({"B", "A"}));
    }

    void finishedAndFailedDownloads()
    {
        Program program;
        const QString dash(QChar(0x2014));
        Program::server().serve(filmPath, {.body = clip()});
        Program::server().serve("/silent.mp4", {.silent = true});
        QVERIFY(program.show("Downloads"));
        QVERIFY(startDownload(program));
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Play"), patience);
        QVERIFY(startDownload(program, "/not/there.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Failed: HTTP 404"), patience);
        QVERIFY(startDownload(program, "/silent.mp4"));
        QTRY_VERIFY(program.text("0 bytes of " + dash));
        QCOMPARE(program.item("QQuickProgressBar")->property("value").toDouble(), 0.0);
        QCOMPARE(program.countControls("Cancel / remove"), 3);
        QCOMPARE(program.countControls("Pause"), 1);

        const QString saved = program.state().downloads()->tasks().constLast().dest;
        QTRY_COMPARE(program.state().downloads()->saved().size(), 1);
        QVERIFY(QFile::rename(saved, saved + ".away"));
        program.state().downloads()->refreshSaved();
        QTRY_VERIFY(program.state().downloads()->saved().isEmpty());
        QVERIFY(program.click("Play")); // of a file that is gone
        QVERIFY(!program.state().showPlayer());

        QVERIFY(program.click("Clear Finished"));
        QTRY_COMPARE(program.countControls("Cancel / remove"), 1);
        QVERIFY(QFile::exists(saved + ".away"));
        QVERIFY(program.control("Pause"));
    }

    void buttonsNameTheirFilm()
    {
        Program program;
        serveFilm();
        QVERIFY(program.show());
        program.state().library()->record(Program::watched(1, 60, 3'600));
        QVERIFY(startDownload(program));
        QStringList names;
        for (const char *section : {"Library", "Downloads"}) {
            QVERIFY(program.click(section));
            QTRY_VERIFY(program.item("ListRow") || program.item("LibraryRow") ||
                        program.item("DownloadRow"));
            for (QQuickItem *item : program.visibleItems()) {
                if (auto *face = QAccessible::queryAccessibleInterface(item))
                    names.append(face->text(QAccessible::Name));
            }
        }
        for (const char *name : {"Resume Reel 1", "Remove Reel 1 from history", "Pause Big Film",
                                 "Cancel / remove Big Film"})
            QVERIFY2(names.contains(name), name);
    }
};

TAVELO_WINDOW_TEST(tst_Downloads)
#include "tst_downloads.moc"
