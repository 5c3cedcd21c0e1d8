// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/TorrentResultModel.h"

#include "platform/ThreadPool.h"

#include <QCoroFuture>

namespace tavelo {

void TorrentResultModel::setAggregator(SearchAggregator *aggregator)
{
    if (aggregator == m_aggregator)
        return;
    if (m_aggregator)
        m_aggregator->disconnect(this);
    m_aggregator = aggregator;
    if (m_aggregator)
        connect(m_aggregator, &SearchAggregator::resultsChanged, this, [this] { follow(); });
    Q_EMIT aggregatorChanged();
    follow();
}

QCoro::Task<> TorrentResultModel::follow()
{
    const QPointer<TorrentResultModel> self(this);
    const int turn = ++m_turn;
    const QList<TorrentResult> results =
        m_aggregator ? m_aggregator->results() : QList<TorrentResult>();
    // A search that begins leaves nothing of the one before.
    if (results.isEmpty())
        co_return setRows({});
    const auto preparing = runOnPool([results] { return TorrentRows::of(results); });
    const TorrentRows rows = co_await preparing;
    if (self && turn == m_turn)
        setRows(rows);
}

void TorrentResultModel::setRows(const TorrentRows &rows)
{
    const QString held = idAt(m_heldRow);
    const int before = m_heldRow;
    arrange(rows);
    if (const int now = rowOf(held); now >= 0 && now != before)
        Q_EMIT heldRowMoved(now - before);
}

void TorrentResultModel::arrange(const TorrentRows &all)
{
    QList<int> places;
    places.reserve(all.rows.size());
    for (int place = 0; place < all.rows.size(); ++place) {
        if (m_filter.accepts(all.rows.at(place)))
            places.append(place);
    }
    m_order.sort(places, all.rows);
    const QString current = idAt(m_currentRow);
    publish(all, places);
    m_currentRow = rowOf(current);
    Q_EMIT rowsChanged();
    Q_EMIT currentRowChanged();
}

void TorrentResultModel::publish(const TorrentRows &all, const QList<int> &places)
{
    const int before = count();
    const int after = static_cast<int>(places.size());
    if (after > before)
        beginInsertRows({}, before, after - 1);
    else if (after < before)
        beginRemoveRows({}, after, before - 1);
    m_all = all;
    m_places = places;
    if (after > before)
        endInsertRows();
    else if (after < before)
        endRemoveRows();
    if (const int kept = qMin(before, after); kept > 0)
        Q_EMIT dataChanged(index(0), index(kept - 1));
}

void TorrentResultModel::setResolution(const QString &resolution)
{
    m_filter.resolution = resolution;
    refilter();
}

void TorrentResultModel::setFormat(const QString &format)
{
    m_filter.format = format;
    refilter();
}

void TorrentResultModel::setMaxSizeGB(int limit)
{
    m_filter.maxSizeGB = limit;
    refilter();
}

void TorrentResultModel::setSourceShown(const QString &name, bool shown)
{
    if (shown)
        m_filter.hiddenSources.remove(name);
    else
        m_filter.hiddenSources.insert(name);
    refilter();
}

void TorrentResultModel::refilter()
{
    arrange(m_all);
    Q_EMIT filterChanged();
}

void TorrentResultModel::sortBy(TorrentSort::Key key)
{
    m_order.choose(key);
    arrange(m_all);
    Q_EMIT orderChanged();
}

QString TorrentResultModel::countText() const
{
    return QStringLiteral("%1 of %2 results").arg(count()).arg(m_all.rows.size());
}

void TorrentResultModel::setCurrentRow(int row)
{
    m_currentRow = row < count() ? row : -1;
    Q_EMIT currentRowChanged();
}

void TorrentResultModel::setHeldRow(int row)
{
    if (row == m_heldRow)
        return;
    m_heldRow = row;
    Q_EMIT heldRowChanged();
}

QVariant TorrentResultModel::resultAt(int row) const
{
    return row >= 0 && row < count() ? QVariant::fromValue(rowAt(row).result) : QVariant();
}

QString TorrentResultModel::idAt(int row) const
{
    return row >= 0 && row < count() ? rowAt(row).id : QString();
}

int TorrentResultModel::rowOf(const QString &id) const
{
    if (id.isNull())
        return -1;
    for (int row = 0; row < count(); ++row) {
        if (rowAt(row).id == id)
            return row;
    }
    return -1;
}

int TorrentResultModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TorrentResultModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    const TorrentRow &row = rowAt(index.row());
    switch (role) {
    case TitleRole:
        return row.titleText();
    case LicenceRole:
        return row.licenceText();
    case SizeRole:
        return row.sizeText();
    case SeedsRole:
        return row.seedsText();
    case SeededRole:
        return row.result.seedersSort() >= 1;
    case PeersRole:
        return row.peersText();
    case QualityRole:
        return row.quality;
    case FormatRole:
        return row.format;
    case SourceRole:
        return row.sourceText();
    case SpokenRole:
        return row.spokenText();
    default:
        return {};
    }
}

QHash<int, QByteArray> TorrentResultModel::roleNames() const
{
    return {
        {TitleRole, QByteArrayLiteral("title")},     {LicenceRole, QByteArrayLiteral("licence")},
        {SizeRole, QByteArrayLiteral("size")},       {SeedsRole, QByteArrayLiteral("seeds")},
        {SeededRole, QByteArrayLiteral("seeded")},   {PeersRole, QByteArrayLiteral("peers")},
        {QualityRole, QByteArrayLiteral("quality")}, {FormatRole, QByteArrayLiteral("format")},
        {SourceRole, QByteArrayLiteral("source")},   {SpokenRole, QByteArrayLiteral("spoken")}};
}

} // namespace tavelo
