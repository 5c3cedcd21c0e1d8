// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Program.h"
#include "WindowTest.h"

#include "platform/files/StandardFolders.h"
#include "testlib/Table.h"

#include <QDir>
#include <QTemporaryDir>

using namespace tavelo;

namespace {

constexpr int patience = 10'000; // milliseconds

QQuickItem *stepper(const Program &program, const QString &text)
{
    for (QQuickItem *item : program.visibleItems()) {
        if (QByteArray(item->metaObject()->className()).startsWith("Stepper_") &&
            item->property("text") == text)
            return item;
    }
    return nullptr;
}

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void providers_data() { Program::mouseAndKeys(); }
    void providers()
    {
        QFETCH(bool, byKeys);
        Program program;
        QVERIFY(program.show("Settings"));
        const auto listed = [&] { return program.state().settings()->providers(); };
        QTRY_VERIFY(program.control("YTS"));
        QCOMPARE(listed().size(), 3);
        const auto act = [&](const QString &control) {
            if (!byKeys)
                return program.click(control);
            const bool there = program.tabTo(control);
            program.key(Qt::Key_Space);
            return there;
        };
        QVERIFY(act("YTS"));
        QVERIFY(listed().at(0).enabled && !listed().at(1).enabled && listed().at(2).enabled);
        QVERIFY(!program.control("YTS")->property("checked").toBool());
        QVERIFY(act("YTS"));
        QVERIFY(listed().at(1).enabled);

        QVERIFY(act("Remove YTS"));
        QCOMPARE(listed().size(), 2);
        QTRY_VERIFY(!program.control("YTS"));
        if (byKeys)
            QTRY_COMPARE(program.focusText(), "Remove ApiBay");
        QVERIFY(act("Remove ApiBay"));
        QVERIFY(act("Remove Orvella"));
        QCOMPARE(listed().size(), 0);
        QTRY_VERIFY(!program.control("Orvella"));
        QVERIFY(program.control("Add Provider…"));

        QVERIFY(act("Add Provider…"));
        QTRY_VERIFY(program.item("ProviderForm"));
        program.type("Attic");
        program.keys({Qt::Key_Tab, Qt::Key_Tab});
        program.type("http://localhost:9117/torznab/api");
        program.key(Qt::Key_Tab);
        program.type("key");
        if (byKeys)
            program.key(Qt::Key_Return);
        else
            QVERIFY(program.click("Add"));
        QTRY_VERIFY(!program.item("ProviderForm"));
        QCOMPARE(listed().size(), 1);
        QCOMPARE(listed().constFirst().name, "Attic");
        QCOMPARE(listed().constFirst().apiKey, "key");
        QCOMPARE(listed().constFirst().kind, ProviderKind::Torznab);
        QTRY_VERIFY(
            program.text(u"Torznab (Jackett/Prowlarr) · http://localhost:9117/torznab/api"_qs));
    }

    void editorIsFreshEveryTime()
    {
        Program program;
        QVERIFY(program.show("Settings"));
        for (const bool again : {false, true}) {
            QVERIFY(program.click("Add Provider…"));
            QTRY_VERIFY(program.item("ProviderForm"));
            QTRY_VERIFY(program.window()->activeFocusItem()->property("placeholderText") == "Name");
            QList<QQuickItem *> fields;
            for (QQuickItem *item : program.visibleItems()) {
                if (item->inherits("QQuickTextField"))
                    fields.append(item);
            }
            QCOMPARE(fields.size(), 3);
            for (const QQuickItem *field : fields)
                QCOMPARE(field->property("text"), "");
            QVERIFY(program.control("Type")->property("value") == "Torznab (Jackett/Prowlarr)");
            QVERIFY(!program.control("Add")->isEnabled());
            if (again)
                break;
            program.type(" ");
            program.key(Qt::Key_Return); // it is not whole yet
            QVERIFY(program.item("ProviderForm"));
            program.keys({Qt::Key_Tab, Qt::Key_Return, Qt::Key_Down, Qt::Key_Return});
            QTRY_COMPARE(program.control("Type")->property("value"), "Orvella");
            program.key(Qt::Key_Tab);
            program.type("localhost:9117");
            QVERIFY(!program.control("Add")->isEnabled());
            program.keys(QList<Qt::Key>(14, Qt::Key_Backspace));
            program.type("http://a");
            QVERIFY(program.control("Add")->isEnabled());
            program.key(Qt::Key_Tab);
            program.type("secret");
            QCOMPARE(fields.at(2)->property("text"), "secret");
            QVERIFY(!fields.at(2)->property("displayText").toString().contains("secret"));
            program.key(Qt::Key_Escape);
            QTRY_VERIFY(!program.item("ProviderForm"));
        }
        QVERIFY(program.click("Cancel"));
        QTRY_VERIFY(!program.item("ProviderForm"));
        QCOMPARE(program.state().settings()->providers().size(), 3);
    }

    void steppers_data()
    {
        const auto row = columns<QString, int, Qt::Key, int>("setting", "from", "key", "to");
        const QString limit = "cacheLimitMB";
        const QString days = "autoCleanDays";
        row("limit up", limit, 1024, Qt::Key_Up, 1152);
        row("limit down", limit, 256, Qt::Key_Down, 128);
        row("limit at its least", limit, 128, Qt::Key_Down, 128);
        row("limit near its least", limit, 200, Qt::Key_Down, 128);
        row("limit below its least", limit, 5, Qt::Key_Down, 5);
        row("limit at its most", limit, 51'200, Qt::Key_Up, 51'200);
        row("limit near its most", limit, 51'100, Qt::Key_Up, 51'200);
        row("limit beyond its most", limit, 60'000, Qt::Key_Down, 51'200);
        row("days up from never", days, 0, Qt::Key_Up, 1);
        row("days down to never", days, 1, Qt::Key_Down, 0);
        row("never", days, 0, Qt::Key_Down, 0);
        row("days at their most", days, 90, Qt::Key_Up, 90);
    }
    void steppers()
    {
        QFETCH(QString, setting);
        QFETCH(int, from);
        QFETCH(Qt::Key, key);
        Program program;
        const bool ofLimit = setting == "cacheLimitMB";
        const auto label = [&](int value) {
            return ofLimit     ? QStringLiteral("Cache limit: %1 MB").arg(value)
                   : value > 0 ? QStringLiteral("Auto-clean cache older than %1 days").arg(value)
                               : QStringLiteral("Auto-clean cache: never");
        };
        QVERIFY(program.show("Settings"));
        SettingsStore *settings = program.state().settings();
        const auto value = [&] { return settings->property(setting.toLatin1()).toInt(); };
        settings->setProperty(setting.toLatin1(), from);
        QTRY_VERIFY(stepper(program, label(from)));
        const QPointer<QQuickItem> shown = stepper(program, label(from));
        QVERIFY(program.tabTo(label(from)));
        program.key(key);
        QTEST(value(), "to");
        QCOMPARE(shown->property("text"), label(value()));

        settings->setProperty(setting.toLatin1(), from);
        const QString button = key == Qt::Key_Up ? "More" : "Less";
        for (QQuickItem *item : program.visibleItems()) {
            if (item->property("text") == button && shown->isAncestorOf(item))
                program.clickAt(Program::middleOf(item));
        }
        QTEST(value(), "to");
        QTRY_COMPARE(SettingsStore().property(setting.toLatin1()).toInt(), value()); // is stored
    }

    void wheelStepsOnlyWithTheFocus()
    {
        Program program;
        QVERIFY(program.show("Settings"));
        QTRY_VERIFY(stepper(program, "Cache limit: 1024 MB"));
        const QPoint place = Program::middleOf(stepper(program, "Cache limit: 1024 MB"));
        program.wheel(place, Qt::NoModifier);
        QCOMPARE(program.state().settings()->cacheLimitMB(), 1024);
        program.clickAt(place);
        program.wheel(place, Qt::NoModifier);
        QTRY_COMPARE(program.state().settings()->cacheLimitMB(), 896);
    }

    void folders_data()
    {
        const auto row = columns<QString, int>("setting", "row");
        row("cache", "cachePath", 0);
        row("downloads", "downloadsPath", 1);
    }
    void folders()
    {
        QFETCH(QString, setting);
        QFETCH(int, row);
        Program program;
        const QTemporaryDir folder;
        const QString before = folder.filePath("before");
        QVERIFY(QDir().mkpath(before + "/chosen #1 %41"));
        QVERIFY(program.show());
        SettingsStore *settings = program.state().settings();
        settings->setProperty(setting.toLatin1(), before);
        QVERIFY(program.click("Settings"));
        QTRY_COMPARE(program.countControls("Choose…"), 2);
        QVERIFY(program.text(before));
        program.window()->grabWindow();
        QList<QPoint> places;
        for (const QQuickItem *item : program.visibleItems()) {
            if (item->inherits("QQuickAbstractButton") && item->property("text") == "Choose…")
                places.append(Program::middleOf(item));
        }
        program.clickAt(places.at(row));
        QTRY_VERIFY_WITH_TIMEOUT(program.text("chosen #1 %41"), patience);
        program.clickAt(Program::middleOf(program.text("chosen #1 %41")));
        QVERIFY(program.click("Open"));
        const QString after = before + "/chosen #1 %41";
        QTRY_COMPARE(settings->property(setting.toLatin1()).toString(), after);
        QTRY_VERIFY(program.text(after));
        if (setting == "cachePath")
            QTRY_VERIFY(QDir(after + "/URLCache").exists());
    }

    void aCacheFolderOfOthersIsTold()
    {
        Program program;
        const QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkdir("Documents"));
        QVERIFY(program.show());
        program.state().settings()->setCachePath(home.path());
        QVERIFY(program.click("Settings"));
        const QString problem = "This folder holds other files. Choose the cache folder again.";
        QTRY_VERIFY(program.text(problem));
        program.state().useCacheFolder(QUrl::fromLocalFile(home.path()));
        QTRY_VERIFY(program.text(home.filePath("Tavelo Cache")));
        QTRY_VERIFY(!program.text(problem));
        program.state().useCacheFolder(QUrl::fromLocalFile("/proc/self"));
        QTRY_VERIFY(program.text("The cache cannot be kept in /proc/self/Tavelo Cache: "
                                 "No such file or directory."));
        QCOMPARE(program.state().settings()->cachePath(), home.filePath("Tavelo Cache"));
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({"Documents", "Tavelo Cache"}));
    }

    void cacheIsMeasuredWhenShown()
    {
        Program program;
        QVERIFY(program.show("Settings"));
        QTRY_VERIFY(program.state().cache()->freeBytes() > 0);
        const auto used = [&](const QString &size) {
            for (const QQuickItem *item : program.visibleItems()) {
                if (item->property("text").toString().startsWith("Cache in use: " + size + " "))
                    return true;
            }
            return false;
        };
        QVERIFY(program.click("Library"));
        const QString folder = program.state().settings()->cachePath();
        QVERIFY(QDir().mkpath(folder));
        QFile file(folder + "/old");
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(QByteArray(5'000'000, 'x')), 5'000'000);
        file.close();
        QVERIFY(program.click("Settings"));
        QTRY_VERIFY(used("5.0 MB"));
        QVERIFY(program.click("Clear Cache"));
        QTRY_VERIFY(!file.exists());
        QTRY_VERIFY(!used("5.0 MB"));
        for (const int number : {2, 1})
            program.state().library()->record(Program::watched(number, 5, 3'600));
        QVERIFY(program.click("Clear Watch History"));
        QVERIFY(program.state().library()->history().isEmpty());
    }
};

TAVELO_WINDOW_TEST(tst_Settings)
#include "tst_settings.moc"
