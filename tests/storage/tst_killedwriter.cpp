// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/FileContent.h"
#include "platform/files/StandardFolders.h"
#include "storage/LibraryStore.h"
#include "storage/SettingsStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

HistoryEntry entry(int number)
{
    HistoryEntry made;
    made.key = QString("film %1").arg(number % 200);
    made.title = QString(200, 'x');
    made.position = number;
    return made;
}

void fill(LibraryStore &store, SettingsStore &settings)
{
    for (int i = 0; i < 200; ++i)
        store.record(entry(i));
    settings.setProviders(settings.providers());
    settings.setCacheLimitMB(1);
}

// What the process does that is killed.
[[noreturn]] void writeForever()
{
    LibraryStore store;
    SettingsStore settings;
    std::puts("writing");
    std::fflush(stdout);
    for (int i = 200;; ++i) {
        store.record(entry(i));
        settings.setCacheLimitMB(i);
        store.file().hurry();
        settings.file().hurry();
        QCoreApplication::processEvents();
    }
}

} // namespace

class TestKilledWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesWholeFiles()
    {
        {
            LibraryStore store;
            SettingsStore settings;
            fill(store, settings);
            store.file().flush();
            store.record(entry(199)); // so that the state before is a full one, too
        }
        const auto providers = SettingsStore().providers();
        QRandomGenerator random(20260117);
        qint64 written = 1;
        for (int kill = 0; kill < 200; ++kill) {
            QProcess writer;
            writer.start(QCoreApplication::applicationFilePath(),
                         {"--write", StandardFolders::support()});
            QVERIFY(writer.waitForReadyRead());
            QThread::usleep(random.bounded(20'000u));
            writer.kill();
            QVERIFY(writer.waitForFinished());
            const SettingsStore settings;
            QCOMPARE(LibraryStore().history().size(), 200);
            QCOMPARE(settings.providers(), providers);
            QVERIFY(settings.cacheLimitMB() >= 1);
            written = qMax(written, settings.cacheLimitMB());
            const QDir support(StandardFolders::support());
            const QFileInfo previous(support.filePath("history.json.previous"));
            const auto before =
                historyFromJson(FileContent::read(previous.filePath(), previous.size()));
            QVERIFY(before && before->damaged == 0);
            QCOMPARE(before->whole.size(), 200);
            QVERIFY(support.entryList({"*unreadable*"}).isEmpty());
        }
        QVERIFY(written >= 200); // they did write
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == "--write") {
        StandardFolders::relocate(QDir(arguments.value(2) + "/../..").canonicalPath());
        writeForever();
    }
    QTemporaryDir folder;
    StandardFolders::relocate(folder.path());
    TestKilledWriter test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killedwriter.moc"
