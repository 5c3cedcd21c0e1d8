// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"
#include "testlib/Table.h"

#include <QDir>
#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

constexpr int patience = 10'000; // milliseconds

const QByteArray twoCues = "1\n00:00:02,000 --> 00:00:04,000\nFirst <i>line</i>\nand second\n\n"
                           "2\n00:00:06,000 --> 00:00:08,000\nLater\n";

void serveSubtitles(const QHash<QString, QByteArray> &files)
{
    QStringList names = files.keys();
    names.sort();
    Program::serveFiles("film0", QStringList{"reel.mp4"} + names);
    for (const QString &name : names)
        Program::server().serve("/download/film0/" + name.toUtf8(), {.body = files[name]});
}

} // namespace

class tst_PlayerMenus : public QObject
{
    Q_OBJECT

private:
    static bool startPaused(Program &program)
    {
        if (!program.startFilm())
            return false;
        program.key(Qt::Key_Space);
        return QTest::qWaitFor([&] { return !program.player().isPlaying(); }, patience);
    }

private Q_SLOTS:
    void subtitlesShowAtTheirTime()
    {
        Program program;
        serveSubtitles({{"reel.en.srt", twoCues}, {"reel.fr.srt", twoCues}});
        QVERIFY(startPaused(program));
        QVERIFY(program.click("Subtitles"));
        QTRY_VERIFY(program.control("✓ Off"));
        program.window()->grabWindow(); // rows get their places when they are drawn
        qreal last = 0;
        for (const char *row : {"✓ Off", "reel.en.srt", "reel.fr.srt", "Choose File…"}) {
            const qreal y = program.control(row)->mapToScene({}).y();
            QVERIFY2(y > last, row);
            last = y;
        }
        QVERIFY(program.click("reel.en.srt"));
        SubtitleManager &subtitles = *program.state().playback()->subtitles();
        QTRY_COMPARE(subtitles.cues().size(), 2);

        const QString first = "First line\nand second";
        program.player().seek(3);
        QTRY_VERIFY(program.text(first));
        const QQuickItem *ground = program.item("SubtitleOverlay");
        const QQuickItem *screen = program.item("PlayerScreen");
        QCOMPARE(ground->y() + ground->height(), screen->height() - 90);
        QVERIFY(qAbs(ground->x() + ground->width() / 2 - screen->width() / 2) <= 1);
        program.player().seek(5);
        QTRY_VERIFY(!program.item("SubtitleOverlay"));
        program.player().seek(7);
        QTRY_VERIFY(program.text("Later"));

        QVERIFY(program.click("Subtitles"));
        QTRY_VERIFY(program.control("✓ reel.en.srt"));
        QVERIFY(!program.control("✓ Off"));
        QVERIFY(program.click("Off"));
        QTRY_VERIFY(!program.item("SubtitleOverlay"));
    }

    void subtitlesThatFailSaySo()
    {
        Program program;
        serveSubtitles({{"empty.srt", "nothing"}});
        QVERIFY(startPaused(program));
        QVERIFY(program.click("Subtitles"));
        QVERIFY(program.click("empty.srt"));
        const QString message = "No subtitle cues found in empty.srt";
        QTRY_COMPARE(program.state().playback()->subtitles()->errorText(), message);
        QVERIFY(program.click("Subtitles"));
        QTRY_VERIFY(program.control(message));
        const QQuickItem *note = program.control(message);
        QVERIFY(!note->isEnabled());
        program.window()->grabWindow(); // rows get their places when they are drawn
        for (const char *other : {"Off", "✓ empty.srt", "Choose File…"})
            QVERIFY2(program.control(other)->mapToScene({}).y() < note->mapToScene({}).y(), other);
        program.clickAt(Program::middleOf(note));
        QVERIFY(program.control(message));
        QVERIFY(program.click("Off"));
        QVERIFY(program.click("Subtitles"));
        QTRY_VERIFY(program.control("✓ Off"));
        QVERIFY(!program.control(message));
    }

    void subtitlesOfAFile()
    {
        const QTemporaryDir folder;
        for (const char *name : {"my own.SRT", "film.mp4"}) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(twoCues) > 0);
        }
        QVERIFY(QDir::setCurrent(folder.path())); // where the toolkit's own dialog begins
        Program program;
        QVERIFY(startPaused(program));
        QVERIFY(program.click("Subtitles"));
        QVERIFY(program.click("Choose File…"));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("my own.SRT"), patience);
        QVERIFY(!program.text("film.mp4"));
        program.clickAt(Program::middleOf(program.text("my own.SRT")));
        QVERIFY(program.click("Open"));
        SubtitleManager &subtitles = *program.state().playback()->subtitles();
        QTRY_COMPARE(subtitles.cues().size(), 2);
        QCOMPARE(subtitles.tracks().size(), 1);
        QVERIFY(program.click("Subtitles"));
        QTRY_VERIFY(program.control("✓ my own.SRT"));
    }

    void commands_data()
    {
        const auto row = columns<QString, int, int>("title", "key", "modifiers");
        const int ctrl = Qt::ControlModifier;
        const int shift = Qt::ShiftModifier;
        const int meta = Qt::MetaModifier;
        row("play", "Play / Pause", int(Qt::Key_P), ctrl);
        row("back", "Skip Back 10s", int(Qt::Key_Left), ctrl);
        row("forward", "Skip Forward 10s", int(Qt::Key_Right), ctrl);
        row("louder", "Volume Up", int(Qt::Key_Up), ctrl);
        row("quieter", "Volume Down", int(Qt::Key_Down), ctrl);
        row("mute", "Mute", int(Qt::Key_M), (ctrl | shift));
        row("full screen", "Full Screen", int(Qt::Key_F), (ctrl | meta));
        row("full screen by F11", "Full Screen", int(Qt::Key_F11), 0);
        row("stop", "Stop", int(Qt::Key_Period), ctrl);
    }

    /// What the player and the window are like, for a comparison before and after.
    static QString stateOf(Program &program)
    {
        const VideoPlayerManager &player = program.player();
        return QString("%1 %2 %3 %4 %5 %6 %7")
            .arg(player.isPlaying() ? "plays" : "stands")
            .arg(qRound(player.currentTime()))
            .arg(qRound(player.volume() * 10))
            .arg(player.isMuted() ? "mute" : "loud")
            .arg(program.window()->visibility() == QWindow::FullScreen ? "full" : "window")
            .arg(program.state().showPlayer() ? "player" : "section")
            .arg(program.state().playback()->nowPlaying() ? "film" : "none");
    }

    void commands()
    {
        QFETCH(QString, title);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        const QHash<QString, QString> expected{
            {"Play / Pause", "plays 11 5 loud window player film"},
            {"Skip Back 10s", "stands 1 5 loud window player film"},
            {"Skip Forward 10s", "stands 12 5 loud window player film"},
            {"Volume Up", "stands 11 6 loud window player film"},
            {"Volume Down", "stands 11 4 loud window player film"},
            {"Mute", "stands 11 5 mute window player film"},
            {"Full Screen", "stands 11 5 loud full player film"},
            {"Stop", "stands 0 5 loud window section none"}};
        for (const bool byMenu : {false, true}) {
            Program program;
            QVERIFY(startPaused(program));
            program.player().setVolume(0.5F);
            program.player().seek(11);
            const QSize size = program.window()->size();
            QCOMPARE(stateOf(program), "stands 11 5 loud window player film");
            if (byMenu) {
                program.key(Qt::Key_F10);
                QVERIFY(program.click(title));
            } else {
                QTest::keyClick(program.window(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
            }
            QTRY_COMPARE(stateOf(program), expected[title]);
            if (title != "Full Screen")
                continue;
            program.key(byMenu ? Qt::Key_F10 : Qt::Key_F11);
            QVERIFY(!byMenu || program.click(title));
            QTRY_COMPARE(stateOf(program), "stands 11 5 loud window player film");
            QTRY_COMPARE(program.window()->size(), size);
        }
    }

    void commandsWithoutAFilm()
    {
        Program program;
        QVERIFY(program.show());
        program.state().setShowPlayer(true);
        for (const Qt::Key key : {Qt::Key_P, Qt::Key_Left, Qt::Key_Right, Qt::Key_Up})
            QTest::keyClick(program.window(), key, Qt::ControlModifier);
        QVERIFY(program.click("Menu"));
        QTRY_VERIFY(program.control("Stop"));
        for (const char *title : {"Play / Pause", "Skip Back 10s", "Mute", "Full Screen", "Stop"})
            QVERIFY2(program.control(title)->isEnabled(), title);
        QVERIFY(program.click("Stop"));
        QVERIFY(!program.state().showPlayer());
    }

    void menuByTheKeyboard()
    {
        Program program;
        QVERIFY(program.show());
        program.key(Qt::Key_F10);
        QTRY_VERIFY(program.control("Quit"));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(!program.control("Quit"));
        program.key(Qt::Key_F10);
        QTRY_VERIFY(program.control("Quit"));
        QStringList reached;
        for (int i = 0; i < 12 && !reached.contains("Quit"); ++i) {
            program.key(Qt::Key_Down);
            for (const QQuickItem *item : program.visibleItems()) {
                if (item->inherits("QQuickMenuItem") && item->property("highlighted").toBool())
                    reached.append(item->property("text").toString());
            }
        }
        QCOMPARE(reached,
                 QStringList({"Play / Pause", "Skip Back 10s", "Skip Forward 10s", "Volume Up",
                              "Volume Down", "Mute", "Full Screen", "Stop", "Quit"}));
        program.key(Qt::Key_Return);
        QTRY_VERIFY(!program.window()->isVisible());
    }

    void commandsLeaveTypingAlone()
    {
        Program program;
        QVERIFY(startPaused(program));
        program.key(Qt::Key_Escape);
        QTRY_VERIFY(program.item("MiniPlayer"));
        QQmlComponent component(qmlEngine(program.window()));
        component.setData("import Tavelo\nTextEntry { placeholderText: 'Words' }", {});
        std::unique_ptr<QObject> made(component.create());
        auto *entry = qobject_cast<QQuickItem *>(made.get());
        QVERIFY2(entry, qPrintable(component.errorString()));
        entry->setParentItem(program.window()->contentItem());
        entry->forceActiveFocus();
        program.player().seek(11);

        for (const char letter : QByteArray("m f. one two"))
            QTest::keyClick(program.window(), letter);
        QCOMPARE(entry->property("text").toString(), "m f. one two");
        QTest::keyClick(program.window(), Qt::Key_Left, Qt::ControlModifier);
        QCOMPARE(entry->property("cursorPosition").toInt(), 9);
        QTest::keyClick(program.window(), Qt::Key_Left, Qt::ControlModifier);
        QTest::keyClick(program.window(), Qt::Key_Right, Qt::ControlModifier);
        QCOMPARE(entry->property("cursorPosition").toInt(), 9);
        QCOMPARE(stateOf(program), "stands 11 10 loud window section film");
        QTest::keyClick(program.window(), Qt::Key_P, Qt::ControlModifier);
        QTRY_VERIFY(program.player().isPlaying());
        QCOMPARE(entry->property("text").toString(), "m f. one two");
    }

    void commandsReachBehindASheet()
    {
        Program program;
        QVERIFY(startPaused(program));
        program.key(Qt::Key_Escape);
        QVERIFY(program.click("Film 1"));
        QTRY_VERIFY(program.item("ItemDetailView"));
        QTest::keyClick(program.window(), Qt::Key_P, Qt::ControlModifier);
        QTRY_VERIFY(program.player().isPlaying());
        QVERIFY(program.item("ItemDetailView"));
    }
};

TAVELO_WINDOW_TEST(tst_PlayerMenus)
#include "tst_playermenus.moc"
