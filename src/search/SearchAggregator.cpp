// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/SearchAggregator.h"

#include "platform/Log.h"
#include "platform/ThreadPool.h"
#include "search/MergeResults.h"

#include <QCoroFuture>

namespace tavelo {

namespace {

QString messageOf(const Error &error)
{
    return error.kind == ErrorKind::TimedOut ? QStringLiteral("Timed out") : error.text;
}

// Not here: a provider may have sent hundreds of thousands.
template <typename T>
void disposeOf(T lists)
{
    runOnPool([lists = std::move(lists)] {});
}

QList<TorrentResult> joined(const QList<QList<TorrentResult>> &lists)
{
    QList<TorrentResult> all;
    for (const QList<TorrentResult> &list : lists)
        all += list;
    return all;
}

} // namespace

SearchAggregator::SearchAggregator(QObject *parent)
    : QObject(parent)
{}

SearchAggregator::~SearchAggregator()
{
    m_stop.request_stop();
}

void SearchAggregator::search(const QString &query, const TorrentSearchProviders &providers)
{
    const QString text = query.trimmed();
    if (text.isEmpty())
        return;
    m_stop.request_stop();
    m_stop = std::stop_source();
    // Whoever hears of our first changes may start another search.
    const std::stop_token stop = m_stop.get_token();
    begin(text, providers);
    for (qsizetype place = 0; place < providers.size() && !stop.stop_requested(); ++place)
        ask(place, providers.at(place), text, stop);
    if (providers.isEmpty() && !stop.stop_requested())
        mergeFlow(stop);
}

void SearchAggregator::begin(const QString &query, const TorrentSearchProviders &providers)
{
    QList<ProviderStatus> statuses;
    for (const auto &provider : providers)
        statuses.append({provider->config().id, provider->config().name});
    disposeOf(std::exchange(m_perProvider, QList<QList<TorrentResult>>(providers.size())));
    disposeOf(std::exchange(m_results, {}));
    m_unanswered = providers.size();
    m_merging = false;
    m_lastQuery = query;
    m_statuses = statuses;
    m_isSearching = true;
    Q_EMIT lastQueryChanged();
    Q_EMIT resultsChanged();
    Q_EMIT statusesChanged();
    Q_EMIT isSearchingChanged();
}

QCoro::Task<> SearchAggregator::ask(qsizetype place,
                                    std::shared_ptr<const TorrentSearchProvider> provider,
                                    QString query, std::stop_token stop)
{
    const auto outcome = co_await provider->search(query, stop);
    // Our end requests the stop, too.
    if (stop.stop_requested())
        co_return;
    take(place, outcome);
    if (!stop.stop_requested() && !m_merging)
        mergeFlow(stop);
}

void SearchAggregator::take(qsizetype place, const TorrentResults &outcome)
{
    --m_unanswered;
    m_answeredMeanwhile = true;
    QList<ProviderStatus> statuses = m_statuses;
    if (outcome) {
        m_perProvider[place] = *outcome;
        statuses[place].state = ProviderStatus::Ok{outcome->size()};
    } else {
        statuses[place].state = ProviderStatus::Failed{messageOf(outcome.error())};
    }
    qCInfo(logSearch).noquote().nospace()
        << "provider " << place + 1 << " of " << statuses.size() << ": "
        << (outcome ? QString::number(outcome->size()) + QLatin1String(" results")
                    : QStringLiteral("failed, status %1").arg(outcome.error().httpStatus));
    setStatuses(statuses);
}

QCoro::Task<> SearchAggregator::mergeFlow(std::stop_token stop)
{
    m_merging = true;
    do {
        m_answeredMeanwhile = false;
        auto merging = runOnPool([lists = m_perProvider] { return mergeResults(joined(lists)); });
        const auto merged = co_await merging;
        if (stop.stop_requested())
            co_return;
        setResults(merged);
    } while (!stop.stop_requested() && m_answeredMeanwhile);
    if (stop.stop_requested())
        co_return;
    m_merging = false;
    if (m_unanswered == 0)
        setSearching(false);
}

void SearchAggregator::setResults(const QList<TorrentResult> &results)
{
    disposeOf(std::exchange(m_results, results));
    Q_EMIT resultsChanged();
}

void SearchAggregator::setStatuses(const QList<ProviderStatus> &statuses)
{
    m_statuses = statuses;
    Q_EMIT statusesChanged();
}

void SearchAggregator::setSearching(bool searching)
{
    m_isSearching = searching;
    Q_EMIT isSearchingChanged();
}

} // namespace tavelo
