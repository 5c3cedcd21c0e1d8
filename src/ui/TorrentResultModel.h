// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchAggregator.h"
#include "ui/TorrentFilter.h"
#include "ui/TorrentOrder.h"
#include "ui/TorrentRow.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QtQmlIntegration>

namespace tavelo {

/// The rows of the result table: what the search has found so far, filtered and sorted. A row is a
/// place; filters, the order and new results put other torrents there. The current row goes with
/// its torrent.
class TorrentResultModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tavelo::SearchAggregator *aggregator READ aggregator WRITE setAggregator NOTIFY
                   aggregatorChanged)
    Q_PROPERTY(QString resolution READ resolution WRITE setResolution NOTIFY filterChanged)
    Q_PROPERTY(QString format READ format WRITE setFormat NOTIFY filterChanged)
    Q_PROPERTY(int maxSizeGB READ maxSizeGB WRITE setMaxSizeGB NOTIFY filterChanged)
    Q_PROPERTY(QStringList hiddenSources READ hiddenSources NOTIFY filterChanged)
    Q_PROPERTY(QStringList sources READ sources NOTIFY rowsChanged)
    Q_PROPERTY(tavelo::TorrentSort::Key sortKey READ sortKey NOTIFY orderChanged)
    Q_PROPERTY(bool descending READ descending NOTIFY orderChanged)
    Q_PROPERTY(int count READ count NOTIFY rowsChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY rowsChanged)
    /// No results, shown or hidden by the filter.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY rowsChanged)
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    Q_PROPERTY(int heldRow READ heldRow WRITE setHeldRow NOTIFY heldRowChanged)

public:
    enum Role {
        TitleRole = Qt::UserRole,
        LicenceRole,
        SizeRole,
        SeedsRole,
        SeededRole,
        PeersRole,
        QualityRole,
        FormatRole,
        SourceRole,
        SpokenRole
    };

    using QAbstractListModel::QAbstractListModel;

    SearchAggregator *aggregator() const { return m_aggregator; }
    void setAggregator(SearchAggregator *aggregator);
    /// What the aggregator has found, made ready.
    void setRows(const TorrentRows &rows);

    QString resolution() const { return m_filter.resolution; }
    void setResolution(const QString &resolution);
    QString format() const { return m_filter.format; }
    void setFormat(const QString &format);
    int maxSizeGB() const { return m_filter.maxSizeGB; }
    void setMaxSizeGB(int limit);
    QStringList hiddenSources() const { return m_filter.hiddenSources.values(); }
    Q_INVOKABLE void setSourceShown(const QString &name, bool shown);
    QStringList sources() const { return m_all.sources; }

    TorrentSort::Key sortKey() const { return m_order.leading(); }
    bool descending() const { return m_order.descending(); }
    Q_INVOKABLE void sortBy(tavelo::TorrentSort::Key key);

    int count() const { return static_cast<int>(m_places.size()); }
    /// "3 of 12 results"
    QString countText() const;
    bool isEmpty() const { return m_all.rows.isEmpty(); }
    /// -1: none, also once its torrent is no longer shown.
    int currentRow() const { return m_currentRow; }
    void setCurrentRow(int row);
    /// The row that is to stay where it stands on the screen while results come in; -1: none.
    int heldRow() const { return m_heldRow; }
    void setHeldRow(int row);

    /// A TorrentResult, which outlives the row.
    Q_INVOKABLE QVariant resultAt(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void aggregatorChanged();
    void filterChanged();
    void orderChanged();
    void rowsChanged();
    void currentRowChanged();
    void heldRowChanged();
    /// New results have put the held row's torrent so many rows further down.
    void heldRowMoved(int by);

private:
    QCoro::Task<> follow();
    void arrange(const TorrentRows &all);
    void publish(const TorrentRows &all, const QList<int> &places);
    void refilter();
    const TorrentRow &rowAt(int row) const { return m_all.rows.at(m_places.at(row)); }
    QString idAt(int row) const;
    int rowOf(const QString &id) const;

    QPointer<SearchAggregator> m_aggregator;
    int m_turn = 0; // of follow(); an earlier one's rows are out of date
    TorrentRows m_all;
    TorrentFilter m_filter;
    TorrentOrder m_order;
    QList<int> m_places; // in m_all, by row
    int m_currentRow = -1;
    int m_heldRow = -1;
};

} // namespace tavelo
