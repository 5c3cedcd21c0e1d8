// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "HistoryScene.h"
#include "testlib/Table.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavelo;

namespace {

QString aside(int number)
{
    return StandardFolders::support() + QString("/history.unreadable-%1.json").arg(number);
}

ino_t inode()
{
    struct stat facts = {};
    ::stat(qPrintable(historyFile()), &facts);
    return facts.st_ino;
}

// What this thread has written so far, in bytes; absent when the system does not say.
std::optional<qint64> writtenHere()
{
    const QByteArray facts = content("/proc/thread-self/io");
    const qsizetype at = facts.indexOf("wchar: ");
    return at < 0 ? std::nullopt
                  : std::optional(facts.mid(at + 7, facts.indexOf('\n', at) - at - 7).toLongLong());
}

// Stands for a full disk: no file may grow past `bytes`.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit now{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before = {};
};

} // namespace

/// What becomes of the watch history when its file, or the disk, is in trouble.
class TestHistoryFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }
    void init() { QVERIFY(QDir(StandardFolders::support()).removeRecursively()); }

    void leavesOutDamagedEntriesOnly_data()
    {
        // value: undefined: the key is missing
        const auto row = columns<QString, QJsonValue, bool>("key", "value", "readable");
        for (const char *key : {"key", "itemID", "title", "source", "isLocal", "position",
                                "duration", "lastPlayed"}) {
            QTest::addRow("%s missing", key) << key << QJsonValue(QJsonValue::Undefined) << false;
            QTest::addRow("%s null", key) << key << QJsonValue() << false;
        }
        row("no thumbnail", "thumbnail", QJsonValue(QJsonValue::Undefined), true);
        row("null thumbnail", "thumbnail", QJsonValue(), true);
        row("odd thumbnail", "thumbnail", QJsonValue(1), false);
        row("another key", "more", QJsonValue(1), true);
        row("number as a text", "position", QJsonValue("1"), false);
        row("date past all calendars", "lastPlayed", QJsonValue(1e300), true);
        row("date before them", "lastPlayed", QJsonValue(-1e300), true);
    }
    void leavesOutDamagedEntriesOnly()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QFETCH(bool, readable);
        LibraryStore().record(entry("good"));
        QJsonArray array = QJsonDocument::fromJson(content()).array();
        QJsonObject changed = array.at(0).toObject();
        changed.insert(key, value);
        array.append(changed);
        write(QJsonDocument(array).toJson());
        LibraryStore store;
        QCOMPARE(store.history().size(), readable ? 2 : 1);
        QCOMPARE(content(aside(1)), readable ? QByteArray() : QJsonDocument(array).toJson());
        QVERIFY(!QFile::exists(aside(2)));
    }

    void readsWhatWasBeforeADamagedFile_data()
    {
        const auto row = columns<bool, int, QString>("hasPrevious", "minutes", "told");
        row("none", false, 0, "The damaged file is kept as %1.");
        row("fresh", true, 0,
            "The damaged file is kept as %1. What was saved less than a minute ago is used "
            "instead.");
        row("old", true, 185,
            "The damaged file is kept as %1. What was saved 3 hours ago is used instead.");
    }
    void readsWhatWasBeforeADamagedFile()
    {
        QFETCH(bool, hasPrevious);
        QFETCH(int, minutes);
        QFETCH(QString, told);
        LibraryStore().record(entry("a"));
        if (hasPrevious)
            LibraryStore().record(entry("b"));
        QFile previous(historyFile() + ".previous");
        if (previous.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            previous.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minutes),
                                 QFile::FileModificationTime);
        const QByteArray torn = content().chopped(1);
        write(torn);
        {
            LibraryStore store;
            QSignalSpy troubled(&store.file(), &KeptFile::troubled);
            QCOMPARE(keysOf(store.history()), hasPrevious ? QStringList("a") : QStringList());
            QCOMPARE(content(aside(1)), torn);
            QTRY_COMPARE(troubled.size(), 1);
            QCOMPARE(troubled.first().first().toString(),
                     "The watch history could not be read. " + told.arg(aside(1)));
        }
        LibraryStore next;
        QSignalSpy troubled(&next.file(), &KeptFile::troubled);
        QCoreApplication::processEvents();
        QVERIFY(troubled.isEmpty());
        write(torn + ' ');
        LibraryStore().record(entry("c"));
        QVERIFY(!QFile::exists(historyFile() + ".previous.new"));
        QCOMPARE(content(aside(1)), torn);
        QCOMPARE(content(aside(2)), torn + ' ');
    }

    void keepsWhateverLiesInItsPlace_data()
    {
        const auto row = columns<QByteArray>("place");
        row("nothing in it", "");
        row("no list", "{}");
        row("only damaged entries", "[{},{}]");
        row("a folder", "folder");
        row("a pipe", "pipe");
    }
    void keepsWhateverLiesInItsPlace()
    {
        QFETCH(QByteArray, place);
        LibraryStore().record(entry("a"));
        LibraryStore().record(entry("b"));
        QVERIFY(QFile::remove(historyFile()));
        if (place == "folder")
            QVERIFY(QDir().mkdir(historyFile()));
        else if (place == "pipe")
            QCOMPARE(mkfifo(qPrintable(historyFile()), 0600), 0);
        else
            write(place);
        QCOMPARE(keysOf(LibraryStore().history()), QStringList("a"));
        QVERIFY(QFileInfo::exists(aside(1)));
        QCOMPARE(keysOf(LibraryStore().history()), QStringList("a"));
        QVERIFY(!QFileInfo::exists(aside(2)));
    }

    void readsWhatWasBeforeAMissingFile()
    {
        LibraryStore().record(entry("a"));
        LibraryStore().record(entry("b"));
        QVERIFY(QFile::remove(historyFile()));
        QCOMPARE(keysOf(LibraryStore().history()), QStringList("a"));
        QVERIFY(QFile::exists(historyFile()));
    }

    // A link to itself cannot be opened by anybody.
    void leavesAloneWhatCannotBeOpened()
    {
        LibraryStore().record(entry("old", 20));
        const QByteArray before = content();
        QVERIFY(QFile::rename(historyFile(), historyFile() + ".elsewhere"));
        QCOMPARE(symlink("history.json", qPrintable(historyFile())), 0);
        LibraryStore store;
        QSignalSpy troubled(&store.file(), &KeptFile::troubled);
        store.record(entry("new"));
        store.file().flush();
        QVERIFY(QFileInfo(historyFile()).isSymLink());
        store.record(entry("newer"));
        store.file().flush();
        QTRY_COMPARE(troubled.size(), 1);
        QVERIFY(troubled.first().first().toString().startsWith(
            "The watch history could not be read: "));

        QVERIFY(QFile::remove(historyFile()));
        QVERIFY(QFile::rename(historyFile() + ".elsewhere", historyFile()));
        store.record(entry("newest"));
        store.file().flush();
        QCOMPARE(keysOf(LibraryStore().history()), QStringList({"newest", "newer", "new", "old"}));
        QCOMPARE(content(aside(1)), before);
    }

    void tellsOnceThatItCannotBeSaved()
    {
        LibraryStore store;
        QSignalSpy troubled(&store.file(), &KeptFile::troubled);
        store.record(entry("a"));
        store.file().flush();
        const QByteArray before = content();
        {
            const FileSizeLimit limit(rlim_t(before.size()) + 10);
            for (const char *key : {"b", "c"}) {
                store.record(entry(key));
                store.file().flush();
            }
        }
        QTRY_COMPARE(troubled.size(), 1);
        QCOMPARE(troubled.first().first(), "The watch history could not be saved: File too large");
        QCOMPARE(content(), before);
        QCOMPARE(QDir(StandardFolders::support()).entryList(QDir::Files | QDir::Hidden).size(), 1);
        store.file().flush();
        QCOMPARE(keysOf(LibraryStore().history()), QStringList({"c", "b", "a"}));
        QCoreApplication::processEvents();
        QCOMPARE(troubled.size(), 1);
    }

    // As when a key that moves through the film is held.
    void gathersManyChanges()
    {
        LibraryStore store;
        for (int i = 0; i < 200; ++i)
            store.record(entry(QString::number(i)));
        store.file().flush();
        const auto here = writtenHere();
        if (!here)
            QSKIP("The system does not tell what a thread writes");
        int writes = 0;
        ino_t last = inode();
        for (int press = 1; press <= 30; ++press) {
            store.updateProgress("7", press * 10, 3000);
            QTest::qWait(33);
            if (std::exchange(last, inode()) != last)
                ++writes;
        }
        QVERIFY2(writes <= 4, qPrintable(QString::number(writes)));
        store.file().flush();
        QCOMPARE(LibraryStore().entryFor("7")->position, 300);
        QVERIFY(*writtenHere() - *here < content().size());
    }

    void hurriesWhenAsked()
    {
        LibraryStore store;
        store.record(entry("a"));
        store.file().flush();
        QElapsedTimer clock;
        clock.start();
        store.record(entry("b"));
        store.file().hurry();
        QTRY_COMPARE(LibraryStore().history().size(), 2);
        QVERIFY(clock.elapsed() < 500);
    }
};

QTEST_GUILESS_MAIN(TestHistoryFile)
#include "tst_historyfile.moc"
