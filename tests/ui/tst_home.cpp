// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"
#include "testlib/Table.h"

#include <QBuffer>
#include <QDir>
#include <QFile>

using namespace tavelo;

namespace {

/// A torrent of one file, without a picture of its pieces that could be checked.
QByteArray torrentFile()
{
    return "d4:infod6:lengthi5e4:name8:reel.mp412:piece lengthi16384e6:pieces20:" +
           QByteArray(20, 'x') + "ee";
}

QByteArray picture()
{
    QImage image(30, 42, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

bool hasPicture(const QQuickItem *poster)
{
    return std::ranges::any_of(poster->childItems(), [](const QQuickItem *part) {
        return part->property("source").toUrl().host() == "poster" && part->implicitWidth() > 0;
    });
}

} // namespace

/// What Home shows of the user's own films, and what the item sheet does with others.
class tst_Home : public QObject
{
    Q_OBJECT

private:
    static constexpr int patience = 10'000; // milliseconds

    static QQuickItem *shelf(const Program &program, const QString &title)
    {
        const QQuickItem *heading = program.text(title);
        return heading ? heading->parentItem()->property("list").value<QQuickItem *>() : nullptr;
    }

private Q_SLOTS:
    void homeShowsWhatWasWatched()
    {
        Program program;
        QVERIFY(program.show());
        LibraryStore &library = *program.state().library();
        library.record(Program::watched(30, 5, 600));   // just begun
        library.record(Program::watched(31, 590, 600)); // nearly done
        for (int i = 0; i < 25; ++i)
            library.record(Program::watched(i, 725, i == 23 ? 0 : 1450));
        QTRY_VERIFY(shelf(program, "Continue Watching"));
        QCOMPARE(shelf(program, "Continue Watching")->property("count"), 20);
        QCOMPARE(shelf(program, "Recently Viewed")->property("count"), 20);
        const auto bar = [&](const QString &title) {
            const QQuickItem *card = program.control(title);
            return card->property("progress").toDouble();
        };
        QTRY_VERIFY(program.text("12:05 watched"));
        QCOMPARE(bar("Reel 24"), 0.5);
        QVERIFY(bar("Reel 23") < 0);
        const QQuickItem *drawn = program.item("WatchedBar");
        QVERIFY(drawn && drawn->height() == 3 && drawn->width() == 150);

        QVERIFY(program.click("Reel 22"));
        QVERIFY(program.state().showPlayer());
        QCOMPARE(program.state().playback()->nowPlaying()->title, "Reel 22");
    }

    void homeShowsSavedFiles()
    {
        Program program;
        QVERIFY(program.show());
        const QDir folder(program.state().settings()->downloadsPath());
        QVERIFY(folder.mkpath("."));
        for (int i = 0; i < 16; ++i) {
            QFile file(folder.filePath(QStringLiteral("Local %1.final.mp4").arg(i)));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("12345") == 5);
        }
        program.state().downloads()->refreshSaved();
        QTRY_VERIFY(shelf(program, "Recently Added Local Content"));
        QCOMPARE(shelf(program, "Recently Added Local Content")->property("count"), 15);
        QTRY_VERIFY_WITH_TIMEOUT(program.text("Popular on Orvella This Week"), patience);
        for (int i = 0; i < 4; ++i)
            program.key(Qt::Key_Down);
        QTRY_COMPARE(shelf(program, "Recently Added Local Content")->hasActiveFocus(), true);
        QTRY_VERIFY(shelf(program, "Recently Added Local Content")
                        ->property("currentItem")
                        .value<QQuickItem *>());
        program.key(Qt::Key_Return);
        QVERIFY(program.state().showPlayer());
        QVERIFY(program.state().playback()->nowPlaying()->title.endsWith(".final"));
        QVERIFY(QDir(folder).removeRecursively());
    }

    void shelfIsDragged()
    {
        Program program;
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(shelf(program, "Featured Public-Domain Films"), patience);
        const QQuickItem *list = shelf(program, "Featured Public-Domain Films");
        QTRY_VERIFY(list->property("contentWidth").toReal() > list->width());
        const qreal start = list->property("contentX").toReal();
        const QPoint from = Program::middleOf(list);
        QTest::mousePress(program.window(), Qt::LeftButton, {}, from);
        for (int step = 1; step <= 10; ++step)
            QTest::mouseMove(program.window(), from - QPoint(20 * step, 0));
        QTest::mouseRelease(program.window(), Qt::LeftButton, {}, from - QPoint(200, 0));
        QVERIFY(list->property("contentX").toReal() > start + 100);
        QVERIFY(!program.state().selectedItem());
    }

    void heldReturnStartsNoFilm()
    {
        Program program;
        QVERIFY(program.show());
        const auto hold = [&] {
            for (int i = 0; i < 5; ++i) {
                QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, {}, "\r", true);
                QCoreApplication::sendEvent(program.window(), &again);
            }
        };
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().suggestions().isEmpty(), patience);
        program.keys({Qt::Key_Down, Qt::Key_Down}); // past the suggestions
        QTRY_VERIFY(shelf(program, "Featured Public-Domain Films")->hasActiveFocus());
        QTest::keyPress(program.window(), Qt::Key_Return);
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Play"), patience);
        hold();
        QVERIFY(!program.state().showPlayer());
        program.key(Qt::Key_Down); // to the files
        hold();
        QVERIFY(!program.state().showPlayer());
        program.key(Qt::Key_Return);
        QVERIFY(program.state().showPlayer());
    }

    void posterComesWhenHomeIsShownAgain()
    {
        Program program;
        Program::server().serve("/poster", {.body = picture(), .status = 503});
        QVERIFY(program.show());
        HistoryEntry entry = Program::watched(1, 725, 1450);
        entry.thumbnail = Program::server().base() + "/poster";
        program.state().library()->record(entry);
        QTRY_VERIFY(program.control("Reel 1"));
        const QPointer<QQuickItem> poster = program.item("Poster");
        QTRY_VERIFY_WITH_TIMEOUT(poster->property("missing").toBool(), patience);
        QVERIFY(program.click("Library"));
        QTRY_VERIFY(!poster->isVisible());
        Program::server().at("/poster").status = 200;
        QVERIFY(program.click("Home"));
        QTRY_VERIFY_WITH_TIMEOUT(hasPicture(poster), patience);
    }

    void itemIsSavedAndInspected_data()
    {
        const auto row =
            columns<QString, QString, bool, QString>("control", "section", "inspected", "handed");
        const QString page = "web " + Program::server().base() + "/details/film0";
        row("download", "Save to Downloads", "Downloads", false, "");
        row("torrent", "Inspect Orvella .torrent", "Home", true, "");
        row("page", "View on Orvella", "Home", false, page);
        row("licence", "https://example.org/terms", "Home", false, "web https://example.org/terms");
    }

    void itemIsSavedAndInspected()
    {
        QFETCH(QString, control);
        QFETCH(bool, inspected);
        QFETCH(QString, handed);
        Program program;
        Program::serveFiles("film0", {"reel.mp4", "film0_archive.torrent"});
        Program::server().serve("/download/film0/film0_archive.torrent", {.body = torrentFile()});
        QVERIFY(program.show());
        QTRY_VERIFY_WITH_TIMEOUT(!program.state().popular().isEmpty(), patience);
        MediaItem item = program.state().popular().first();
        item.licenseURL = "https://example.org/terms";
        program.state().selectItem(item);
        QTRY_VERIFY_WITH_TIMEOUT(program.control("Play"), patience);
        QVERIFY(program.click(control));
        QTEST(program.state().sectionName(), "section");
        QCOMPARE(!program.state().selectedItem(), control == "Save to Downloads");
        QTRY_COMPARE(program.state().inspector().has_value(), inspected);
        QCOMPARE(program.handed(), handed.isEmpty() ? QStringList() : QStringList{handed});
        QCOMPARE(program.state().downloads()->tasks().isEmpty(), control != "Save to Downloads");
        for (const DownloadTask &task : program.state().downloads()->tasks())
            program.state().downloads()->cancel(task.id);
    }
};

TAVELO_WINDOW_TEST(tst_Home)
#include "tst_home.moc"
