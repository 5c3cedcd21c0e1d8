// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "search/ProviderStatus.h"
#include "search/TorrentSearchProvider.h"

#include <QObject>

namespace tavelo {

/// Asks all providers at once and publishes what they find, merged, as they answer. A new search
/// takes the place of the running one, whose connections are closed and of which nothing more is
/// published. Main thread only; merging is done on the thread pool. Not to be destroyed by whoever
/// hears of a change.
class SearchAggregator : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY isSearchingChanged)
    Q_PROPERTY(QString lastQuery READ lastQuery NOTIFY lastQueryChanged)

public:
    explicit SearchAggregator(QObject *parent = nullptr);
    ~SearchAggregator() override;

    /// The current search's, merged in the providers' order.
    QList<TorrentResult> results() const { return m_results; }
    /// One a provider, in their order.
    QList<ProviderStatus> statuses() const { return m_statuses; }
    /// Until all providers have answered.
    bool isSearching() const { return m_isSearching; }
    /// Trimmed.
    QString lastQuery() const { return m_lastQuery; }

    /// Ends the running search and starts one; a blank query changes nothing.
    void search(const QString &query, const TorrentSearchProviders &providers);

Q_SIGNALS:
    void resultsChanged();
    void statusesChanged();
    void isSearchingChanged();
    void lastQueryChanged();

private:
    // Each belongs to the search that `stop` ends, and publishes nothing once it has.
    QCoro::Task<> ask(qsizetype place, std::shared_ptr<const TorrentSearchProvider> provider,
                      QString query, std::stop_token stop);
    QCoro::Task<> mergeFlow(std::stop_token stop);

    void begin(const QString &query, const TorrentSearchProviders &providers);
    void take(qsizetype place, const TorrentResults &outcome);
    void setResults(const QList<TorrentResult> &results);
    void setStatuses(const QList<ProviderStatus> &statuses);
    void setSearching(bool searching);

    QList<TorrentResult> m_results;
    QList<ProviderStatus> m_statuses;
    bool m_isSearching = false;
    QString m_lastQuery;
    QList<QList<TorrentResult>> m_perProvider; // unmerged, in the providers' order
    qsizetype m_unanswered = 0;
    bool m_merging = false;
    bool m_answeredMeanwhile = false; // since the running merge took its input
    std::stop_source m_stop;
};

} // namespace tavelo
