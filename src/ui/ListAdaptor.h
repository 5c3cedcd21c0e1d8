// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QtQmlIntegration>

namespace tavelo {

/// A list of records as the rows of a view. A new list is taken over by difference: a record whose
/// key stays keeps its row's delegate, wherever it moves. Where very many change places, as in a
/// list that is sorted anew, the delegates stay and take other records.
class ListAdaptor : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// Any list: of gadgets, of texts, of script objects.
    Q_PROPERTY(QVariant records READ records WRITE setRecords NOTIFY recordsChanged)
    /// The property that tells one record from another. Empty: the record itself.
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY keyChanged)
    Q_PROPERTY(int count READ count NOTIFY recordsChanged)

public:
    enum Role { RecordRole = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    QVariant records() const { return m_records; }
    void setRecords(const QVariant &records);
    QString key() const { return m_key; }
    void setKey(const QString &key);
    int count() const { return static_cast<int>(m_rows.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void recordsChanged();
    void keyChanged();

private:
    struct Row
    {
        QString id;
        QVariant record;
    };

    QList<Row> rowsOf(const QVariant &records) const;
    void removeMissing(const QList<Row> &rows);
    void sortWhenManyMoved(const QList<Row> &rows);
    void placeRow(int at, const Row &row);
    int insertRun(int at, const QList<Row> &rows, const QSet<QString> &known);
    void update(int at, const QVariant &record);

    QVariant m_records;
    QString m_key;
    QList<Row> m_rows;
};

} // namespace tavelo
