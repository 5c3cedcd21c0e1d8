// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/ListAdaptor.h"

#include "ui/RecordField.h"

#include <QJSValue>
#include <QSet>

#include <algorithm>
#include <numeric>

namespace tavelo {

namespace {

/// Up to so many rows move one by one.
constexpr int singleMoves = 64;

} // namespace

void ListAdaptor::setRecords(const QVariant &records)
{
    m_records = records.metaType() == QMetaType::fromType<QJSValue>()
                    ? records.value<QJSValue>().toVariant()
                    : records;
    const QList<Row> rows = rowsOf(m_records);
    removeMissing(rows);
    sortWhenManyMoved(rows);

    QSet<QString> known;
    for (const Row &row : std::as_const(m_rows))
        known.insert(row.id);
    for (int at = 0; at < rows.size(); ++at) {
        if (known.contains(rows[at].id))
            placeRow(at, rows[at]);
        else
            at = insertRun(at, rows, known) - 1;
    }
    Q_EMIT recordsChanged();
}

void ListAdaptor::setKey(const QString &key)
{
    if (key == m_key)
        return;
    m_key = key;
    beginResetModel();
    m_rows = rowsOf(m_records);
    endResetModel();
    Q_EMIT keyChanged();
}

QList<ListAdaptor::Row> ListAdaptor::rowsOf(const QVariant &records) const
{
    QList<Row> rows;
    QHash<QString, int> seen;
    if (!records.canConvert<QVariantList>())
        return rows;
    for (const QVariant &record : records.value<QVariantList>()) {
        const QString key = m_key.isEmpty() ? record.toString() : recordField(record, m_key);
        // The second record of one key is another row.
        rows.append({key + QLatin1Char('\n') + QString::number(seen[key]++), record});
    }
    return rows;
}

void ListAdaptor::removeMissing(const QList<Row> &rows)
{
    QSet<QString> wanted;
    for (const Row &row : rows)
        wanted.insert(row.id);
    for (int last = count() - 1; last >= 0; --last) {
        int first = last + 1;
        while (first > 0 && !wanted.contains(m_rows[first - 1].id))
            --first;
        if (first > last)
            continue;
        beginRemoveRows({}, first, last);
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
}

void ListAdaptor::sortWhenManyMoved(const QList<Row> &rows)
{
    QHash<QString, qsizetype> places;
    for (const Row &row : rows)
        places.insert(row.id, places.size());
    QList<int> order(m_rows.size()); // the present rows in their future order
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, {}, [&](int row) { return places[m_rows[row].id]; });
    int moved = 0;
    for (int row = 0; row < count(); ++row)
        moved += order[row] != row;
    if (moved <= singleMoves)
        return;

    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    QList<Row> sorted;
    QList<int> futureOf(count());
    for (const int row : order) {
        futureOf[row] = static_cast<int>(sorted.size());
        sorted.append(m_rows[row]);
    }
    for (const QModelIndex &from : persistentIndexList())
        changePersistentIndex(from, index(futureOf[from.row()]));
    m_rows = sorted;
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void ListAdaptor::placeRow(int at, const Row &row)
{
    const auto here = std::find_if(m_rows.cbegin() + at, m_rows.cend(),
                                   [&](const Row &other) { return other.id == row.id; });
    const int from = static_cast<int>(here - m_rows.cbegin());
    if (from != at) {
        beginMoveRows({}, from, from, {}, at);
        m_rows.move(from, at);
        endMoveRows();
    }
    update(at, row.record);
}

int ListAdaptor::insertRun(int at, const QList<Row> &rows, const QSet<QString> &known)
{
    int end = at;
    while (end < rows.size() && !known.contains(rows[end].id))
        ++end;
    beginInsertRows({}, at, end - 1);
    m_rows.insert(at, end - at, Row());
    std::copy(rows.cbegin() + at, rows.cbegin() + end, m_rows.begin() + at);
    endInsertRows();
    return end;
}

void ListAdaptor::update(int at, const QVariant &record)
{
    if (m_rows[at].record == record)
        return;
    m_rows[at].record = record;
    Q_EMIT dataChanged(index(at), index(at), {RecordRole});
}

int ListAdaptor::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ListAdaptor::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count() || role != RecordRole)
        return {};
    return m_rows[index.row()].record;
}

QHash<int, QByteArray> ListAdaptor::roleNames() const
{
    return {{RecordRole, QByteArrayLiteral("record")}};
}

} // namespace tavelo
