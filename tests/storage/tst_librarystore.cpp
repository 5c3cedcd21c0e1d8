// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/StandardFolders.h"
#include "storage/LibraryStore.h"
#include "testlib/Table.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tavelo;

namespace {

QString historyFile()
{
    return StandardFolders::support() + "/history.json";
}

QByteArray content()
{
    QFile file(historyFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QByteArray &json)
{
    QFile file(historyFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(json);
}

HistoryEntry entry(const QString &key, double position = 0, double duration = 0)
{
    HistoryEntry made;
    made.key = key;
    made.position = position;
    made.duration = duration;
    made.lastPlayed = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    return made;
}

QStringList keysOf(const QList<HistoryEntry> &history)
{
    QStringList keys;
    for (const HistoryEntry &each : history)
        keys.append(each.key);
    return keys;
}

} // namespace

class TestLibraryStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;

private Q_SLOTS:
    void initTestCase() { StandardFolders::relocate(m_folder.path()); }
    void init() { LibraryStore().clear(); }

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
        QByteArray expected =
            "[{'duration':100,'isLocal':false,'itemID':'item','key':'k/1',"
            "'lastPlayed':721692800.123,'position':12.5,'source':'s:f','thumbnail':'t:p',"
            "'title':'A Film'},"
            "{'duration':0,'isLocal':true,'itemID':'','key':'k/2','lastPlayed':721692800.123,"
            "'position':0,'source':'','title':''}]";
        QCOMPARE(content(), expected.replace('\'', '"'));
        QVERIFY(LibraryStore().history() == store.history());
        store.clear();
        QCOMPARE(content(), "[]");
    }

    void rejectsAFileThatIsNotWhole_data()
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
    void rejectsAFileThatIsNotWhole()
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
        QCOMPARE(store.history().size(), readable ? 2 : 0);
        store.record(entry("next"));
        QCOMPARE(LibraryStore().history().size(), readable ? 3 : 1);
    }

    void readsNothingFromTornFiles()
    {
        LibraryStore().record(entry("a"));
        const QByteArray whole = content();
        for (qsizetype length = 0; length < whole.size(); ++length) {
            write(whole.first(length));
            QVERIFY(LibraryStore().history().isEmpty());
        }
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
        QCOMPARE(keysOf(LibraryStore().history()), QStringList({"a", "c", "b"}));
    }

    void keepsTwoHundred()
    {
        QList<HistoryEntry> many;
        for (int i = 0; i < 250; ++i)
            many.append(entry(QString::number(i)));
        many.append(entry("7")); // a loaded file may hold a key twice
        write(*toJson(many));
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
        QVERIFY(LibraryStore().entryFor("a") == entry("a", 0, 90));
        QVERIFY(QFile::remove(historyFile()));
        store.updateProgress("unknown", 1, 1);
        QVERIFY(!QFile::exists(historyFile()));
    }

    void neverWritesWhatJsonCannotSay()
    {
        LibraryStore store;
        store.record(entry("a", 5));
        const QByteArray before = content();
        store.updateProgress("a", qQNaN(), 1);
        store.updateProgress("a", 1, qInf());
        QCOMPARE(content(), before);
        store.updateProgress("a", 7, 8);
        QVERIFY(LibraryStore().entryFor("a") == entry("a", 7, 8));
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
