// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "TorrentScene.h"
#include "WindowTest.h"

#include "testlib/Table.h"
#include "ui/Clipboard.h"
#include "ui/TorrentActions.h"

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QTemporaryDir>

using namespace tavelo;

namespace {

const QByteArray metainfo = "d8:announce9:udp://t.e4:infod5:filesl"
                            "d6:lengthi1500000e4:pathl5:a.mp4eed6:lengthi9e4:pathl5:a.SRTee"
                            "e4:name4:Reel12:piece lengthi16384e6:pieces20:aaaaaaaaaaaaaaaaaaaaee";
const QString magnet = "magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef01234567&dn=Reel%20One";

TorrentResult fullResult()
{
    TorrentResult result = reels(1).first();
    result.archiveID = "film0";
    result.infoHash = "0123456789abcdef0123456789abcdef01234567";
    result.magnet = magnet;
    result.torrentURL = Program::server().url("/reel.torrent");
    result.pageURL = QUrl("http://page.example/");
    return result;
}

} // namespace

/// What can be done with a torrent: the row's menu, and the inspector.
class tst_TorrentActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Program::server().serve("/reel.torrent", {.body = metainfo}); }

    void rowMenu_data()
    {
        const auto row =
            columns<QString, QString, QString, QString>("choice", "handed", "copied", "shown");
        row("page", "Open Source Page", "web http://page.example/", "", "");
        row("open magnet", "Open Magnet in Torrent App", "open " + magnet, "", "");
        row("copy magnet", "Copy Magnet Link", "", magnet, "");
        row("copy hash", "Copy Info Hash", "", "0123456789abcdef0123456789abcdef01234567", "");
        row("magnet", "Inspect Magnet", "", "", "0 tracker(s)");
        row("file", "Inspect .torrent File", "", "", "2 file(s) · 1.5 MB · 1 video");
        row("item", "Details & Play…", "", "", "reel.mp4");
    }

    void rowMenu()
    {
        QFETCH(QString, choice);
        QFETCH(QString, handed);
        QFETCH(QString, copied);
        QFETCH(QString, shown);
        Program program;
        QVERIFY(showResults(program, {fullResult()}));
        Clipboard().setText("before");
        program.window()->grabWindow();
        QTest::mouseClick(program.window(), Qt::RightButton, {},
                          Program::middleOf(program.text("Reel 0")));
        QVERIFY(program.click(choice));
        QTRY_VERIFY(!program.control(choice));
        QTRY_COMPARE(program.handed().value(0), handed);
        QCOMPARE(QGuiApplication::clipboard()->text(), copied.isEmpty() ? "before" : copied);
        if (!shown.isEmpty())
            QTRY_VERIFY(program.text(shown));
    }

    void magnetOfAFeed_data()
    {
        const auto row = columns<QString, QString, QString>("link", "handed", "notice");
        const QString hash = "0123456789abcdef0123456789ABCDEF01234567";
        const QString topic = "magnet:?xt=urn:btih:" + hash;
        const QString invalid = "That doesn't look like a valid magnet link.";
        row("what names the torrent and where it is",
            topic + "&dn=a%2Db&xl=7&tr=udp%3A%2F%2Fa&ws=http://w&tr=udp://b&tr=udp://b",
            "open " + topic + "&dn=a%2Db&xl=7&tr=udp%3A%2F%2Fa&ws=http://w&tr=udp://b&tr=udp://b",
            "");
        row("and nothing else",
            topic + "&xt=urn:btih:" + QString(40, 'f') +
                "&dn=a&dn=b&xs=http://127.0.0.1/&as=x&x.pe=127.0.0.1:1&tr&xl=1&xl=2&%74r=c#&tr=d",
            "open " + topic + "&dn=a&xl=1&tr=c", "");
        row("no torrent", "magnet:?dn=x", "", invalid);
        row("a page", "https://h/magnet", "", invalid);
        row("a local file", "file:///x.torrent", "", invalid);
    }
    void magnetOfAFeed()
    {
        QFETCH(QString, link);
        QFETCH(QString, handed);
        QFETCH(QString, notice);
        Program program;
        QVERIFY(program.show());
        TorrentResult result;
        result.magnet = link;
        TorrentActions actions;
        actions.setApp(&program.state());
        actions.setResult(QVariant::fromValue(result));
        actions.perform(int(TorrentAction::OpenMagnet));
        QTRY_VERIFY(!program.handed().isEmpty() || program.state().notice());
        QCOMPARE(program.handed().join('\n'), handed);
        QCOMPARE(program.state().noticeText(), notice);
    }

    void menuByKeys()
    {
        Program program;
        QVERIFY(showResults(program, {fullResult(), reels(2).last()}));
        program.window()->grabWindow();
        program.clickAt(Program::middleOf(program.text("Reel 0")));
        QTest::mouseMove(program.window(), {5, 5}); // off the menu to come
        const QQuickItem *table = program.window()->activeFocusItem();
        QTest::keyClick(program.window(), Qt::Key_F10, Qt::ShiftModifier);
        QTRY_VERIFY(program.control("Copy Info Hash"));
        QTRY_VERIFY(program.window()->activeFocusItem() != table);
        const auto highlighted = [&] {
            QString text;
            for (const QQuickItem *item : program.visibleItems()) {
                if (item->inherits("QQuickMenuItem") && item->property("highlighted").toBool())
                    text = item->property("text").toString();
            }
            return text;
        };
        for (const char *row : {"Details & Play…", "Inspect Magnet"}) {
            program.key(Qt::Key_Down);
            QTRY_COMPARE(highlighted(), row);
        }
        program.key(Qt::Key_Return);
        QTRY_VERIFY(program.state().inspector());
        QTRY_VERIFY(program.item("TorrentInspector"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.item("TorrentInspector"));
        QVERIFY(!program.state().inspector());

        program.key(Qt::Key_Down);
        QTRY_COMPARE(currentRow(program), 1);
        program.key(Qt::Key_Menu);
        QTRY_VERIFY(program.item("QQuickPopupItem"));
        QVERIFY(!program.control("Copy Info Hash"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.item("QQuickPopupItem"));
        program.key(Qt::Key_Up);
        QCOMPARE(currentRow(program), 0);
    }

    void fileFromDisk()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a b.torrent");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(metainfo) > 0);
        file.close();
        Program program;
        QVERIFY(showSection(program));
        QVERIFY(program.click("Open .torrent…"));
        auto *dialog = program.item("Chooser")->property("item").value<QObject *>();
        QVERIFY(dialog);
        QTRY_VERIFY(dialog->property("visible").toBool());
        QVERIFY(QMetaObject::invokeMethod(dialog, "reject"));
        QVERIFY(
            QMetaObject::invokeMethod(dialog, "chosen", Q_ARG(QUrl, QUrl::fromLocalFile(path))));
        QTRY_VERIFY(program.text("2 file(s) · 1.5 MB · 1 video"));
        QVERIFY(program.text("Reel/a.SRT"));
        QVERIFY(program.control("Copy Magnet"));
        QVERIFY(program.click("Open .torrent in App"));
        const QString address = QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
        QTRY_COMPARE(program.handed(), QStringList{"open " + address});
        QVERIFY(program.click("Reveal"));
        QTRY_COMPARE(program.handed().value(1), "show " + path);
        for (const auto &[content, notice] :
             {std::pair{QByteArray(metainfo).replace("Reel", "Real"),
                        "The .torrent file was changed since it was shown. Inspect it again."},
              {QByteArray(), "The .torrent file can no longer be read. Inspect it again."}}) {
            QVERIFY(file.remove());
            if (!content.isEmpty())
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0);
            file.close();
            for (const char *button : {"Open .torrent in App", "Reveal"}) {
                QVERIFY(program.click(button));
                QTRY_COMPARE(program.state().noticeText(), notice);
                QVERIFY(program.click("OK"));
                QTRY_VERIFY(!program.control("OK"));
            }
        }
        QCOMPARE(program.handed().size(), 2);
        QVERIFY(program.click("Close"));
        QTRY_VERIFY(!program.state().inspector());
    }

    void inspectorOfAMagnet()
    {
        Program program;
        QVERIFY(program.show());
        program.state().inspectMagnet(magnet);
        QTRY_VERIFY(program.text("Magnet links carry no file list; it's fetched by your torrent "
                                 "client once it joins the swarm."));
        QVERIFY(program.text("Reel One"));
        QVERIFY(!program.control("Reveal"));
        QVERIFY(!program.control("Open .torrent in App"));
        QVERIFY(!program.item("TorrentFileList"));
        QVERIFY(program.click("Copy Magnet"));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), magnet);
        QVERIFY(program.click("Open in Torrent App"));
        QTRY_COMPARE(program.handed(), QStringList{"open " + magnet});
        QVERIFY(program.state().inspector());
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.state().inspector());
    }

    void everyStopHasAName()
    {
        QAccessible::setActive(true);
        Program program;
        QList<TorrentResult> found = reels(3);
        found[0].title = "<b>bold</b>";
        QVERIFY(showResults(program, found));
        program.state().inspectMagnet(magnet);
        QTRY_VERIFY(program.item("TorrentInspector"));
        QTRY_VERIFY(program.text("<b>bold</b>")); // rows come with the next frame
        int stops = 0;
        for (QQuickItem *item : program.visibleItems()) {
            const char *type = item->metaObject()->className();
            if (item->inherits("QQuickText"))
                QVERIFY2(item->property("textFormat").toInt() == Qt::PlainText, type);
            if (!item->activeFocusOnTab() || !item->isEnabled())
                continue;
            ++stops;
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(item);
            QVERIFY2(face, type);
            QVERIFY2(!face->text(QAccessible::Name).isEmpty(), type);
            QVERIFY2(face->role() != QAccessible::NoRole, type);
        }
        QVERIFY(stops > 15);
    }
};

TAVELO_WINDOW_TEST(tst_TorrentActions)
#include "tst_torrentactions.moc"
