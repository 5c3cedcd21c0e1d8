// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"

#include "platform/StandardFolders.h"
#include "ui/StorageText.h"

#include <QAccessible>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <clocale>

using namespace tavelo;

namespace {

constexpr int patience = 10'000; // milliseconds
const QByteArray filmPath = "/download/big/film.mp4";

HistoryEntry entry(int number, double position, double duration)
{
    HistoryEntry made;
    made.key = QStringLiteral("key %1").arg(number);
    made.title = QStringLiteral("Reel %1").arg(number);
    made.source = Program::server().base() + "/download/film0/reel.mp4";
    made.position = position;
    made.duration = duration;
    made.lastPlayed = QDateTime({2025, 3, 1}, {12, 0});
    return made;
}

/// Reel 1 is the latest.
void record(LibraryStore *library, int count)
{
    for (int number = count; number > 0; --number)
        library->record(entry(number, number == 1 ? 60 : 5, 3'600));
}

QByteArray clip()
{
    QFile file(TAVELO_CLIPS "/counted.mp4");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class tst_Manage : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Program> m_program;

    AppState &state() { return m_program->state(); }
    DownloadTask task() { return state().downloads()->tasks().constFirst(); }
    /// Shows the window with `section`.
    bool show(const QString &section) { return m_program->show() && m_program->click(section); }
    void keys(const QList<Qt::Key> &keys)
    {
        for (const Qt::Key key : keys)
            m_program->key(key);
    }
    void type(const QString &text)
    {
        for (const QChar letter : text)
            QTest::sendKeyEvent(QTest::Click, m_program->window(), Qt::Key_unknown, letter,
                                Qt::NoModifier);
    }
    QString focusText() const
    {
        const QQuickItem *item = m_program->window()->activeFocusItem();
        return item ? item->property("text").toString() : QString();
    }
    bool tabTo(const QString &text)
    {
        for (int stop = 0; stop < 40 && focusText() != text; ++stop)
            m_program->key(Qt::Key_Tab);
        return focusText() == text;
    }
    QQuickItem *stepper(const QString &text) const
    {
        for (QQuickItem *item : m_program->visibleItems()) {
            if (QByteArray(item->metaObject()->className()).startsWith("Stepper_") &&
                item->property("text") == text)
                return item;
        }
        return nullptr;
    }
    /// The film stands still after a third of it until its range is asked for.
    void serveFilm()
    {
        const QByteArray film = clip();
        FaultServer::Answer answer{.body = film, .etag = "\"1\"", .ranges = true};
        Program::server().serveRange(filmPath, answer);
        answer.silentAfter = film.size() / 3;
        Program::server().serve(filmPath, answer);
    }
    bool startDownload(const QByteArray &path = filmPath)
    {
        return !state().downloads()->start("Big Film", Program::server().url(path), {});
    }
    /// Presses a button of the only row: by the mouse, or as the `column`th by keys.
    bool press(const QString &button, bool byKeys, int column)
    {
        if (!byKeys)
            return m_program->click(button);
        if (!QTest::qWaitFor([&] { return m_program->control(button) != nullptr; }, patience))
            return false;
        keys({Qt::Key_Down, Qt::Key_Left, Qt::Key_Left});
        keys(QList<Qt::Key>(column, Qt::Key_Right));
        m_program->key(Qt::Key_Return);
        return true;
    }

private Q_SLOTS:
    void initTestCase()
    {
        std::setlocale(LC_NUMERIC, "C");
        QAccessible::setActive(true);
    }
    void init()
    {
        Program::server();
        QFile::remove(StandardFolders::configuration() + "/preferences.json");
        QFile::remove(SettingsStore::appSupport() + "/history.json");
        QDir(StandardFolders::movies()).removeRecursively();
        m_program = std::make_unique<Program>();
    }
    void cleanup() { m_program.reset(); }

    void emptyLibrary()
    {
        QVERIFY(show("Library"));
        QTRY_VERIFY(m_program->text("Nothing watched yet."));
        QVERIFY(m_program->text(
            "Nothing saved yet. Download a file from an Orvella item to keep it here."));
        QVERIFY(!m_program->control("Clear History"));
        keys({Qt::Key_Tab, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Return});
        record(state().library(), 1);
        QTRY_VERIFY(m_program->text("1:00 / 1:00:00"));
        QVERIFY(m_program->control("Resume"));
        QVERIFY(!m_program->text("Nothing watched yet."));
        QVERIFY(m_program->click("Clear History"));
        QTRY_VERIFY(m_program->text("Nothing watched yet."));
        QVERIFY(!m_program->control("Clear History"));
    }

    void libraryRemoves_data()
    {
        QTest::addColumn<bool>("byKeys");
        QTest::newRow("by the mouse") << false;
        QTest::newRow("by keys") << true;
    }

    void libraryRemoves()
    {
        QFETCH(bool, byKeys);
        QVERIFY(show("Library"));
        record(state().library(), 3);
        const auto left = [this] {
            QStringList titles;
            for (const HistoryEntry &entry : state().library()->history())
                titles.append(entry.title);
            return titles;
        };
        QTRY_VERIFY(m_program->control("Remove Reel 2 from history"));
        if (byKeys)
            keys({Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return});
        else
            QVERIFY(m_program->click("Remove Reel 2 from history"));
        QTRY_COMPARE(left(), (QStringList{"Reel 1", "Reel 3"}));
        QTRY_VERIFY(!m_program->control("Remove Reel 2 from history"));
        if (!byKeys)
            return;
        m_program->key(Qt::Key_Delete);
        QTRY_COMPARE(left(), QStringList{"Reel 1"});
        QTRY_COMPARE(m_program->countControls("Play"), 0);
        keys({Qt::Key_Down, Qt::Key_Delete});
        QTRY_VERIFY(m_program->text("Nothing watched yet."));
        m_program->key(Qt::Key_Backtab);
        QCOMPARE(focusText(), "Menu"); // the sidebar's last
    }

    void libraryPlays_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("title");
        QTest::newRow("saved") << "Play"
                               << "my film";
        QTest::newRow("history") << "Resume"
                                 << "Reel 1";
    }

    void libraryPlays()
    {
        QFETCH(QString, button);
        QVERIFY(show("Library"));
        record(state().library(), 1);
        QVERIFY(QDir().mkpath(StandardFolders::movies()));
        QVERIFY(
            QFile::copy(TAVELO_CLIPS "/counted.mp4", StandardFolders::movies() + "/my film.mp4"));
        QVERIFY(!m_program->text("my film"));
        QVERIFY(m_program->click("Downloads")); // the folder is read when the screen is shown
        QVERIFY(m_program->click("Library"));
        QTRY_VERIFY(m_program->text("my film"));
        QVERIFY(m_program->click(button));
        QVERIFY(state().showPlayer());
        QVERIFY(state().playback()->nowPlaying());
        QTEST(state().playback()->nowPlaying()->title, "title");
    }

    // Two hundred films cost what is seen of them, and the keys reach them all.
    void longHistory()
    {
        QVERIFY(m_program->show());
        record(state().library(), 200);
        QVERIFY(m_program->click("Library"));
        QTRY_VERIFY(m_program->text("Reel 1"));
        QVERIFY(m_program->countControls("Play") < 40);
        QVERIFY(!m_program->text("Reel 200"));
        keys(QList<Qt::Key>(200, Qt::Key_Down));
        QTRY_VERIFY(m_program->text("Reel 200"));
        const QQuickItem *last = m_program->text("Reel 200");
        QTRY_VERIFY(Program::middleOf(last).y() < m_program->window()->height());
        QVERIFY(!m_program->text("Reel 1"));
    }

    void positionsChangeInPlace()
    {
        QVERIFY(show("Library"));
        record(state().library(), 3);
        QTRY_VERIFY(m_program->text("1:00 / 1:00:00"));
        const QPointer<QQuickItem> row = m_program->text("Reel 1");
        state().library()->updateProgress("key 1", 65, 3'600);
        QTRY_VERIFY(m_program->text("1:05 / 1:00:00"));
        QCOMPARE(m_program->text("Reel 1"), row.data());
    }

    void downloadIsPausedAndResumed_data() { libraryRemoves_data(); }

    void downloadIsPausedAndResumed()
    {
        QFETCH(bool, byKeys);
        serveFilm();
        QVERIFY(show("Downloads"));
        QVERIFY(m_program->text("No active downloads."));
        QVERIFY(startDownload());
        QTRY_VERIFY(m_program->item("QQuickProgressBar"));
        const QPointer<QQuickItem> bar = m_program->item("QQuickProgressBar");
        QVERIFY(!m_program->text("No active downloads."));
        QTRY_VERIFY_WITH_TIMEOUT(task().progress() > 0.3, patience);
        QTRY_COMPARE(m_program->item("QQuickProgressBar")->property("value"), task().progress());

        QVERIFY(press("Pause", byKeys, 0));
        QTRY_VERIFY_WITH_TIMEOUT(m_program->control("Resume"), patience);
        QTRY_VERIFY(m_program->text(StorageText::status(task())));
        QVERIFY(StorageText::status(task()).endsWith(u" · paused"_qs));
        QCOMPARE(m_program->item("QQuickProgressBar"), bar.data());

        QVERIFY(press("Resume", byKeys, 0));
        QTRY_VERIFY_WITH_TIMEOUT(m_program->text("Saved to " + StandardFolders::movies()),
                                 patience);
        QVERIFY(!m_program->item("QQuickProgressBar"));
        QFile file(task().dest);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), clip());
        QTRY_COMPARE(state().downloads()->saved().size(), 1);
        QVERIFY(press("Play", byKeys, 0));
        QVERIFY(state().showPlayer());
        QTRY_COMPARE(state().playback()->nowPlaying()->title, "film");
    }

    void downloadIsCancelled_data() { libraryRemoves_data(); }

    void downloadIsCancelled()
    {
        QFETCH(bool, byKeys);
        serveFilm();
        QVERIFY(show("Downloads"));
        QVERIFY(startDownload());
        QTRY_VERIFY_WITH_TIMEOUT(task().progress() > 0.3, patience);
        QVERIFY(press("Cancel / remove", byKeys, 1));
        QTRY_VERIFY(state().downloads()->tasks().isEmpty());
        QTRY_VERIFY(m_program->text("No active downloads."));
        QTRY_COMPARE(Program::server().openRequests(), 0);
    }

    void finishedAndFailedDownloads()
    {
        const QString dash(QChar(0x2014));
        Program::server().serve(filmPath, {.body = clip()});
        Program::server().serve("/silent.mp4", {.silent = true});
        QVERIFY(show("Downloads"));
        QVERIFY(startDownload());
        QTRY_VERIFY_WITH_TIMEOUT(m_program->control("Play"), patience);
        QVERIFY(startDownload("/not/there.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(m_program->text("Failed: HTTP 404"), patience);
        QVERIFY(startDownload("/silent.mp4"));
        QTRY_VERIFY(m_program->text("0 bytes of " + dash));
        QCOMPARE(m_program->item("QQuickProgressBar")->property("value").toDouble(), 0.0);
        QCOMPARE(m_program->countControls("Cancel / remove"), 3);
        QCOMPARE(m_program->countControls("Pause"), 1);

        const QString saved = state().downloads()->tasks().constLast().dest;
        QTRY_COMPARE(state().downloads()->saved().size(), 1);
        QVERIFY(QFile::rename(saved, saved + ".away"));
        state().downloads()->refreshSaved();
        QTRY_VERIFY(state().downloads()->saved().isEmpty());
        QVERIFY(m_program->click("Play")); // of a file that is gone
        QVERIFY(!state().showPlayer());

        QVERIFY(m_program->click("Clear Finished"));
        QTRY_COMPARE(m_program->countControls("Cancel / remove"), 1);
        QVERIFY(QFile::exists(saved + ".away"));
        QVERIFY(m_program->control("Pause"));
    }

    void buttonsNameTheirFilm()
    {
        serveFilm();
        QVERIFY(m_program->show());
        record(state().library(), 1);
        QVERIFY(startDownload());
        QStringList names;
        for (const char *section : {"Library", "Downloads"}) {
            QVERIFY(m_program->click(section));
            QTRY_VERIFY(m_program->item("ListRow") || m_program->item("LibraryRow") ||
                        m_program->item("DownloadRow"));
            for (QQuickItem *item : m_program->visibleItems()) {
                if (auto *face = QAccessible::queryAccessibleInterface(item))
                    names.append(face->text(QAccessible::Name));
            }
        }
        for (const char *name : {"Resume Reel 1", "Remove Reel 1 from history", "Pause Big Film",
                                 "Cancel / remove Big Film"})
            QVERIFY2(names.contains(name), name);
    }

    void providers_data() { libraryRemoves_data(); }

    void providers()
    {
        QFETCH(bool, byKeys);
        QVERIFY(show("Settings"));
        const auto listed = [this] { return state().settings()->providers(); };
        QTRY_VERIFY(m_program->control("YTS"));
        QCOMPARE(listed().size(), 3);
        const auto act = [&](const QString &control) {
            if (!byKeys)
                return m_program->click(control);
            const bool there = tabTo(control);
            m_program->key(Qt::Key_Space);
            return there;
        };
        QVERIFY(act("YTS"));
        QVERIFY(listed().at(0).enabled && !listed().at(1).enabled && listed().at(2).enabled);
        QVERIFY(!m_program->control("YTS")->property("checked").toBool());
        QVERIFY(act("YTS"));
        QVERIFY(listed().at(1).enabled);

        QVERIFY(act("Remove YTS"));
        QCOMPARE(listed().size(), 2);
        QTRY_VERIFY(!m_program->control("YTS"));
        if (byKeys)
            QTRY_COMPARE(focusText(), "Remove ApiBay");
        QVERIFY(act("Remove ApiBay"));
        QVERIFY(act("Remove Orvella"));
        QCOMPARE(listed().size(), 0);
        QTRY_VERIFY(!m_program->control("Orvella"));
        QVERIFY(m_program->control("Add Provider…"));

        QVERIFY(act("Add Provider…"));
        QTRY_VERIFY(m_program->item("ProviderForm"));
        type("Attic");
        keys({Qt::Key_Tab, Qt::Key_Tab});
        type("http://localhost:9117/torznab/api");
        m_program->key(Qt::Key_Tab);
        type("key");
        if (byKeys)
            m_program->key(Qt::Key_Return);
        else
            QVERIFY(m_program->click("Add"));
        QTRY_VERIFY(!m_program->item("ProviderForm"));
        QCOMPARE(listed().size(), 1);
        QCOMPARE(listed().constFirst().name, "Attic");
        QCOMPARE(listed().constFirst().apiKey, "key");
        QCOMPARE(listed().constFirst().kind, ProviderKind::Torznab);
        QTRY_VERIFY(
            m_program->text(u"Torznab (Jackett/Prowlarr) · http://localhost:9117/torznab/api"_qs));
    }

    void editorIsFreshEveryTime()
    {
        QVERIFY(show("Settings"));
        for (const bool again : {false, true}) {
            QVERIFY(m_program->click("Add Provider…"));
            QTRY_VERIFY(m_program->item("ProviderForm"));
            QTRY_VERIFY(m_program->window()->activeFocusItem()->property("placeholderText") ==
                        "Name");
            QList<QQuickItem *> fields;
            for (QQuickItem *item : m_program->visibleItems()) {
                if (item->inherits("QQuickTextField"))
                    fields.append(item);
            }
            QCOMPARE(fields.size(), 3);
            for (const QQuickItem *field : fields)
                QCOMPARE(field->property("text"), "");
            QVERIFY(m_program->control("Type")->property("label") == "Torznab (Jackett/Prowlarr)");
            QVERIFY(!m_program->control("Add")->isEnabled());
            if (again)
                break;
            type(" ");
            m_program->key(Qt::Key_Return); // it is not whole yet
            QVERIFY(m_program->item("ProviderForm"));
            keys({Qt::Key_Tab, Qt::Key_Return, Qt::Key_Down, Qt::Key_Return});
            QTRY_COMPARE(m_program->control("Type")->property("label"), "Orvella");
            m_program->key(Qt::Key_Tab);
            type("localhost:9117");
            QVERIFY(!m_program->control("Add")->isEnabled());
            keys(QList<Qt::Key>(14, Qt::Key_Backspace));
            type("http://a");
            QVERIFY(m_program->control("Add")->isEnabled());
            m_program->key(Qt::Key_Tab);
            type("secret");
            QCOMPARE(fields.at(2)->property("text"), "secret");
            QVERIFY(!fields.at(2)->property("displayText").toString().contains("secret"));
            m_program->key(Qt::Key_Escape);
            QTRY_VERIFY(!m_program->item("ProviderForm"));
        }
        QVERIFY(m_program->click("Cancel"));
        QTRY_VERIFY(!m_program->item("ProviderForm"));
        QCOMPARE(state().settings()->providers().size(), 3);
    }

    void steppers_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<int>("from");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("to");
        const QString limit = "cacheLimitMB";
        const QString days = "autoCleanDays";
        QTest::newRow("limit up") << limit << 1024 << Qt::Key_Up << 1152;
        QTest::newRow("limit down") << limit << 256 << Qt::Key_Down << 128;
        QTest::newRow("limit at its least") << limit << 128 << Qt::Key_Down << 128;
        QTest::newRow("limit near its least") << limit << 200 << Qt::Key_Down << 128;
        QTest::newRow("limit below its least") << limit << 5 << Qt::Key_Down << 5;
        QTest::newRow("limit at its most") << limit << 51'200 << Qt::Key_Up << 51'200;
        QTest::newRow("limit near its most") << limit << 51'100 << Qt::Key_Up << 51'200;
        QTest::newRow("limit beyond its most") << limit << 60'000 << Qt::Key_Down << 51'200;
        QTest::newRow("days up from never") << days << 0 << Qt::Key_Up << 1;
        QTest::newRow("days down to never") << days << 1 << Qt::Key_Down << 0;
        QTest::newRow("never") << days << 0 << Qt::Key_Down << 0;
        QTest::newRow("days at their most") << days << 90 << Qt::Key_Up << 90;
    }

    void steppers()
    {
        QFETCH(QString, setting);
        QFETCH(int, from);
        QFETCH(Qt::Key, key);
        const bool ofLimit = setting == "cacheLimitMB";
        const auto label = [&](int value) {
            return ofLimit     ? QStringLiteral("Cache limit: %1 MB").arg(value)
                   : value > 0 ? QStringLiteral("Auto-clean cache older than %1 days").arg(value)
                               : QStringLiteral("Auto-clean cache: never");
        };
        QVERIFY(show("Settings"));
        SettingsStore *settings = state().settings();
        const auto value = [&] { return settings->property(setting.toLatin1()).toInt(); };
        settings->setProperty(setting.toLatin1(), from);
        QTRY_VERIFY(stepper(label(from)));
        const QPointer<QQuickItem> shown = stepper(label(from));
        QVERIFY(tabTo(label(from)));
        m_program->key(key);
        QTEST(value(), "to");
        QCOMPARE(shown->property("text"), label(value()));

        settings->setProperty(setting.toLatin1(), from);
        const QString button = key == Qt::Key_Up ? "More" : "Less";
        for (QQuickItem *item : m_program->visibleItems()) {
            if (item->property("text") == button && shown->isAncestorOf(item))
                m_program->clickAt(Program::middleOf(item));
        }
        QTEST(value(), "to");
        QCOMPARE(SettingsStore().property(setting.toLatin1()).toInt(), value()); // is stored
    }

    void wheelStepsOnlyWithTheFocus()
    {
        QVERIFY(show("Settings"));
        QTRY_VERIFY(stepper("Cache limit: 1024 MB"));
        const QPoint place = Program::middleOf(stepper("Cache limit: 1024 MB"));
        m_program->wheel(place, Qt::NoModifier);
        QCOMPARE(state().settings()->cacheLimitMB(), 1024);
        m_program->clickAt(place);
        m_program->wheel(place, Qt::NoModifier);
        QTRY_COMPARE(state().settings()->cacheLimitMB(), 896);
    }

    void folders_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<int>("row");
        QTest::newRow("cache") << "cachePath" << 0;
        QTest::newRow("downloads") << "downloadsPath" << 1;
    }

    void folders()
    {
        QFETCH(QString, setting);
        QFETCH(int, row);
        const QTemporaryDir folder;
        const QString before = folder.filePath("before");
        QVERIFY(QDir().mkpath(before + "/chosen #1 %41"));
        QVERIFY(m_program->show());
        SettingsStore *settings = state().settings();
        settings->setProperty(setting.toLatin1(), before);
        QVERIFY(m_program->click("Settings"));
        QTRY_COMPARE(m_program->countControls("Choose…"), 2);
        QVERIFY(m_program->text(before));
        m_program->window()->grabWindow();
        QList<QPoint> places;
        for (const QQuickItem *item : m_program->visibleItems()) {
            if (item->inherits("QQuickAbstractButton") && item->property("text") == "Choose…")
                places.append(Program::middleOf(item));
        }
        m_program->clickAt(places.at(row));
        QTRY_VERIFY_WITH_TIMEOUT(m_program->text("chosen #1 %41"), patience);
        m_program->clickAt(Program::middleOf(m_program->text("chosen #1 %41")));
        QVERIFY(m_program->click("Open"));
        const QString after = before + "/chosen #1 %41";
        QTRY_COMPARE(settings->property(setting.toLatin1()).toString(), after);
        QTRY_VERIFY(m_program->text(after));
        if (setting == "cachePath")
            QTRY_VERIFY(QDir(after + "/URLCache").exists());
    }

    void cacheIsMeasuredWhenShown()
    {
        QVERIFY(show("Settings"));
        QTRY_VERIFY(state().cache()->freeBytes() > 0);
        const auto used = [this](const QString &size) {
            for (const QQuickItem *item : m_program->visibleItems()) {
                if (item->property("text").toString().startsWith("Cache in use: " + size + " "))
                    return true;
            }
            return false;
        };
        QVERIFY(m_program->click("Library"));
        const QString folder = state().settings()->cachePath();
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + "/old");
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(QByteArray(5'000'000, 'x')), 5'000'000);
        file.close();
        QVERIFY(m_program->click("Settings"));
        QTRY_VERIFY(used("5.0 MB"));
        QVERIFY(m_program->click("Clear Cache"));
        QTRY_VERIFY(!file.exists());
        QTRY_VERIFY(!used("5.0 MB"));
        record(state().library(), 2);
        QVERIFY(m_program->click("Clear Watch History"));
        QVERIFY(state().library()->history().isEmpty());
    }
};

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::OpenGL);
    QGuiApplication app(argc, argv);
    tst_Manage test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_manage.moc"
