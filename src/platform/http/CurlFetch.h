// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/CallQueue.h"
#include "platform/http/CurlExchange.h"
#include "platform/http/Fetch.h"
#include "platform/http/HostBudget.h"

#include <QSet>

#include <atomic>
#include <map>
#include <thread>
#include <vector>

namespace tavelo {

/// The Fetch of the program: libcurl on one thread. Everything but the public operations happens
/// there. One thread, because libcurl's kept connections belong to one.
class CurlFetch final : public Fetch
{
public:
    /// `certificates`: authorities in PEM that are trusted besides the system's.
    explicit CurlFetch(QByteArray certificates = {});
    ~CurlFetch() override;
    Q_DISABLE_COPY_MOVE(CurlFetch)

    /// Ends every request with ErrorKind::Cancelled, and drops those that come after it. Not to be
    /// called from a receiver.
    void stop();

    FetchId start(FetchRequest request, std::shared_ptr<FetchReceiver> receiver) override;
    void cancel(FetchId id) override;
    void resume(FetchId id) override;
    void connectAhead(const QUrl &url) override;
    void tryAgain(const QUrl &url) override;
    void favourFilm(bool shortOfBytes) override;

private:
    using Exchange = std::unique_ptr<CurlExchange>;
    using Clock = CurlExchange::Clock;

    void run();
    void runCalls();
    void add(Exchange exchange);
    void startWaiting();
    void wait(FetchId id);
    bool mayStart(CurlExchange &exchange);
    void begin(CurlExchange &exchange);
    void openAhead(const QUrl &url, bool mayBeRenewed);
    void sleep();
    void shareOut();
    std::vector<CurlExchange *> runningDownloads() const;
    void takeEnded();
    void endSilent();
    void end(FetchId id, CURLcode code, std::optional<Error> error);
    bool isAhead(const CurlExchange &exchange) const;
    void release(CurlExchange &exchange);
    int untilNextDeadline() const;
    CurlEasy idleHandle();

    /// A connection to a host that nobody has asked for anything yet.
    struct Ahead
    {
        QUrl url;
        FetchId opener;                         // the request that opens it
        curl_socket_t socket = CURL_SOCKET_BAD; // once it is open
        bool mayBeRenewed = true;
    };

    // First: they must outlive the handles.
    KeptConnections m_connections;
    CurlShare m_share;
    CurlMulti m_multi;
    CurlSettings m_settings;
    std::map<FetchId, Exchange> m_exchanges; // also in the order in which they came
    std::vector<FetchId> m_waiting;          // those of them that have not begun
    std::vector<CurlEasy> m_idle;
    HostBudget m_budget;
    QHash<QString, Ahead> m_ahead; // by host
    QSet<QString> m_asking;        // hosts whose proxy is being asked for
    bool m_filmIsShort = false;
    Clock::time_point m_nextShare = {}; // of what downloads take beside a film

    std::atomic<quint64> m_lastId = 0;
    std::shared_ptr<CallQueue> m_calls;
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

} // namespace tavelo
