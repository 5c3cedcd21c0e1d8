// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/MediaItem.h"
#include "testlib/Table.h"
#include "ui/ListAdaptor.h"

#include <QAbstractItemModelTester>
#include <QJSEngine>
#include <QSignalSpy>
#include <QTest>

#include <map>

using namespace tavelo;

namespace {

/// "a b:2 c" as records with `id` and `note`.
QVariantList records(const QString &text)
{
    QVariantList list;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        list.append(QVariantMap{{"id", word.section(':', 0, 0)}, {"note", word.section(':', 1)}});
    }
    return list;
}

QString shown(const ListAdaptor &list)
{
    QStringList words;
    for (int row = 0; row < list.rowCount(); ++row) {
        const QVariantMap record = list.index(row).data(ListAdaptor::RecordRole).toMap();
        const QString note = record["note"].toString();
        words.append(record["id"].toString() + (note.isEmpty() ? QString() : ":" + note));
    }
    return words.join(' ');
}

} // namespace

class tst_ListAdaptor : public QObject
{
    Q_OBJECT

private:
    QJSEngine m_script;

private Q_SLOTS:
    void followsByDifference_data()
    {
        const auto row = columns<QString, QString, int, int, int, int>(
            "before", "after", "inserts", "removals", "moves", "changes");
        row("filled", "", "a b c", 1, 0, 0, 0);
        row("emptied", "a b c", "", 0, 1, 0, 0);
        row("the same", "a b c", "a b c", 0, 0, 0, 0);
        row("one changed", "a b c", "a b:new c", 0, 0, 0, 1);
        row("appended", "a b", "a b c d", 1, 0, 0, 0);
        row("in front", "c d", "a b c d", 1, 0, 0, 0);
        row("between", "a d", "a b c d", 1, 0, 0, 0);
        row("first gone", "a b c", "b c", 0, 1, 0, 0);
        row("two runs gone", "a b c d e", "c", 0, 2, 0, 0);
        row("last to the front", "a b c d", "d a b c", 0, 0, 1, 0);
        row("turned around", "a b c", "c b a", 0, 0, 2, 0);
        row("all others", "a b", "x y z", 1, 1, 0, 0);
        row("of everything", "a b c d", "d:2 x b y", 2, 2, 1, 1);
        row("equal keys", "a a b", "a:2 a b a", 1, 0, 0, 1);
    }

    void followsByDifference()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        ListAdaptor list;
        const QAbstractItemModelTester tester(&list);
        list.setKey("id");
        list.setRecords(records(before));
        QCOMPARE(shown(list), before);

        std::multimap<QString, QPersistentModelIndex> rows;
        for (int row = 0; row < list.rowCount(); ++row) {
            const QModelIndex index = list.index(row);
            rows.emplace(index.data(ListAdaptor::RecordRole).toMap()["id"].toString(), index);
        }
        const QSignalSpy inserts(&list, &ListAdaptor::rowsInserted);
        const QSignalSpy removals(&list, &ListAdaptor::rowsRemoved);
        const QSignalSpy moves(&list, &ListAdaptor::rowsMoved);
        const QSignalSpy changes(&list, &ListAdaptor::dataChanged);
        const QSignalSpy resets(&list, &ListAdaptor::modelReset);
        list.setRecords(records(after));

        QCOMPARE(shown(list), after);
        QTEST(int(inserts.size()), "inserts");
        QTEST(int(removals.size()), "removals");
        QTEST(int(moves.size()), "moves");
        QTEST(int(changes.size()), "changes");
        QCOMPARE(resets.size(), 0);
        for (const auto &[id, index] : rows) {
            QCOMPARE(index.isValid(), after.contains(id));
            if (index.isValid())
                QCOMPARE(index.data(ListAdaptor::RecordRole).toMap()["id"].toString(), id);
        }
    }

    void takesAnyList_data()
    {
        const auto row = columns<QVariant, QString, int>("list", "key", "count");
        MediaItem item;
        item.id = "a";
        MediaItem other;
        other.id = "b";
        row("gadgets", QVariant::fromValue(QList<MediaItem>{item, other}), "id", 2);
        row("texts", QVariant(QStringList{"a", "b", "c"}), "", 3);
        row("script objects", QVariant::fromValue(m_script.evaluate("[{id: 'a'}, {id: 'b'}]")),
            "id", 2);
        row("nothing", QVariant(), "id", 0);
        row("null", QVariant::fromValue(nullptr), "id", 0);
        row("no list", QVariant(17), "id", 0);
        row("no such key", QVariant(records("a b")), "name", 2);
    }

    void takesAnyList()
    {
        QFETCH(QVariant, list);
        QFETCH(QString, key);
        ListAdaptor adaptor;
        const QAbstractItemModelTester tester(&adaptor);
        adaptor.setKey(key);
        adaptor.setRecords(list);
        QTEST(adaptor.rowCount(), "count");
        const QSignalSpy changes(&adaptor, &ListAdaptor::dataChanged);
        adaptor.setRecords(list);
        QTEST(adaptor.rowCount(), "count");
        QCOMPARE(changes.size(), 0);
    }

    void gadgetsAreComparedWhole()
    {
        MediaItem item;
        item.id = "a";
        item.title = "Before";
        ListAdaptor list;
        list.setKey("id");
        list.setRecords(QVariant::fromValue(QList{item}));
        const QSignalSpy changes(&list, &ListAdaptor::dataChanged);
        item.title = "After";
        list.setRecords(QVariant::fromValue(QList{item}));
        QCOMPARE(changes.size(), 1);
        QCOMPARE(list.index(0).data(ListAdaptor::RecordRole).value<MediaItem>().title, "After");
    }

    void sortedAnew()
    {
        QStringList texts;
        for (int i = 0; i < 5'000; ++i)
            texts.append(QString::number(i));
        ListAdaptor list;
        list.setRecords(texts);
        const QPersistentModelIndex first = list.index(0);
        const QSignalSpy moves(&list, &ListAdaptor::rowsMoved);
        const QSignalSpy layouts(&list, &ListAdaptor::layoutChanged);
        const QSignalSpy changes(&list, &ListAdaptor::dataChanged);

        std::ranges::reverse(texts);
        texts.removeOne("17");
        texts.insert(1, "new");
        list.setRecords(texts);
        for (int row = 0; row < texts.size(); ++row)
            QCOMPARE(list.index(row).data(ListAdaptor::RecordRole).toString(), texts[row]);
        QCOMPARE(first.row(), list.rowCount() - 1);
        QCOMPARE(layouts.size(), 1);
        QCOMPARE(moves.size() + changes.size(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_ListAdaptor)
#include "tst_listadaptor.moc"
