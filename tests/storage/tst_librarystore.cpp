// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "HistoryScene.h"
#include "testlib/Table.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace tavelo;

class TestLibraryStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }
    void init() { QVERIFY(QDir(StandardFolders::support()).removeRecursively()); }

    void writesTheFileAsOthersReadIt()
    {
        HistoryEntry film = entry("k/1", 12.5, 100);
        film.itemID = "item";
        film.title = "A Film";
        film.source = "s:f";
        film.thumbnail = "t:p";
        HistoryEntry file = entry("k/2");
        file.isLocal = true;
        LibraryStore store;
        store.record(file);
        store.record(film);
        store.file().flush();
        QByteArray expected =
            "[{'duration':100,'isLocal':false,'itemID':'item','key':'k/1',"
            "'lastPlayed':721692800.123,'position':12.5,'source':'s:f','thumbnail':'t:p',"
            "'title':'A Film'},"
            "{'duration':0,'isLocal':true,'itemID':'','key':'k/2','lastPlayed':721692800.123,"
            "'position':0,'source':'','title':''}]";
        QCOMPARE(content(), expected.replace('\'', '"'));
        QVERIFY(LibraryStore().history() == store.history());
        store.clear();
        store.file().flush();
        QCOMPARE(content(), "[]");
        QVERIFY(content(historyFile() + ".previous") == expected);
    }

    void recordsLatestFirstAndOnceAKey()
    {
        LibraryStore store;
        QSignalSpy changed(&store, &LibraryStore::historyChanged);
        for (const char *key : {"a", "b", "c", "a"})
            store.record(entry(key));
        QCOMPARE(keysOf(store.history()), QStringList({"a", "c", "b"}));
        store.record(entry(u"caf\u00E9"_qs));
        store.record(entry(u"cafe\u0301"_qs, 20));
        QCOMPARE(store.history().size(), 4);
        QCOMPARE(store.entryFor(u"caf\u00E9"_qs)->position, 20);
        QVERIFY(!store.entryFor("CAFE"));
        store.updateProgress(u"caf\u00E9"_qs, 30, 40);
        store.remove(u"caf\u00E9"_qs);
        store.remove("nobody");
        QCOMPARE(changed.size(), 9);
        store.file().flush();
        QCOMPARE(keysOf(LibraryStore().history()), QStringList({"a", "c", "b"}));
    }

    void keepsTwoHundred()
    {
        QList<HistoryEntry> many;
        for (int i = 0; i < 250; ++i)
            many.append(entry(QString::number(i)));
        many.append(entry("7")); // a loaded file may hold a key twice
        QDir().mkpath(StandardFolders::support());
        write(toJson(many));
        LibraryStore store;
        QCOMPARE(store.history().size(), 251);
        store.record(entry("7"));
        QCOMPARE(store.history().size(), 200);
        QCOMPARE(keysOf(store.history()).count("7"), 1);
        store.record(entry("198"));
        QCOMPARE(store.history().size(), 200);
        store.record(entry("new"));
        QCOMPARE(store.history().last().key, "197");
    }

    void updatesInPlace()
    {
        LibraryStore store;
        store.record(entry("a", 1, 100));
        store.record(entry("b"));
        store.updateProgress("a", 50, 0);
        store.updateProgress("a", 60, -1);
        QVERIFY(store.history().at(1) == entry("a", 60, 100));
        store.updateProgress("a", 0, 90);
        store.file().flush();
        QVERIFY(LibraryStore().entryFor("a") == entry("a", 0, 90));
        QVERIFY(QFile::remove(historyFile()));
        store.updateProgress("unknown", 1, 1);
        store.file().flush();
        QVERIFY(!QFile::exists(historyFile()));
    }

    void takesNothingThatJsonCannotSay()
    {
        LibraryStore store;
        store.record(entry("a", 5));
        store.record(entry("b", qInf()));
        store.updateProgress("a", qQNaN(), 1);
        store.updateProgress("a", 1, qInf());
        QVERIFY(store.history() == QList{entry("a", 5)});
    }

    void choosesWhatToContinue_data()
    {
        const auto row = columns<double, double, bool>("position", "duration", "chosen");
        row("just begun", 10.0, 100.0, false);
        row("begun, length unknown", 10.5, 0.0, true);
        row("length below 0", 10.5, -1.0, true);
        row("nearly done", 95.0, 100.0, false);
        row("not quite", 94.9, 100.0, true);
    }
    void choosesWhatToContinue()
    {
        QFETCH(double, position);
        QFETCH(double, duration);
        LibraryStore store;
        store.record(entry("last", 50));
        store.record(entry("x", position, duration));
        store.record(entry("first", 50));
        const QStringList keys = keysOf(store.continueWatching());
        QTEST(keys.contains("x"), "chosen");
        QCOMPARE(keys.first(), "first");
        QCOMPARE(keys.last(), "last");
    }
};

QTEST_GUILESS_MAIN(TestLibraryStore)
#include "tst_librarystore.moc"
