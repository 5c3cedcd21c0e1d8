// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/CurlFetch.h"

#include "platform/http/CurlError.h"
#include "platform/http/ProxyBook.h"
#include "platform/http/ServiceHosts.h"
#include "platform/http/WebAddress.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace tavelo {

namespace {

constexpr long keptConnections = 16; // libcurl's own number grows with the handles
constexpr size_t keptHandles = 8;
constexpr qint64 speedBesideFilm = 64 * 1024; // bytes a second of all downloads
constexpr auto shareTime = std::chrono::seconds(1);
constexpr int longestWaitMs = 60'000;

/// Of a connection that is opened for whoever comes next.
class NobodyReceives : public FetchReceiver
{
    bool headArrived(const FetchHead &) override { return true; }
    Take bytesArrived(const char *, qint64) override { return Take::Stop; }
    void ended(const FetchEnd &) override {}
};

void initializeOnce()
{
    // Before any thread of ours uses it, and for good: others in the process may use it, too.
    static const CURLcode done = curl_global_init(CURL_GLOBAL_ALL);
    if (done != CURLE_OK)
        qFatal("libcurl cannot be used: %s", curl_easy_strerror(done));
}

} // namespace

Fetch &Fetch::shared()
{
    static CurlFetch fetch(ServiceHosts::current().certificates);
    static const auto end =
        QObject::connect(QCoreApplication::instance(), &QObject::destroyed, [] { fetch.stop(); });
    Q_UNUSED(end)
    return fetch;
}

CurlFetch::CurlFetch(QByteArray certificates)
{
    initializeOnce();
    m_share.reset(curl_share_init());
    m_multi.reset(curl_multi_init());
    // One thread uses it, so it needs no locks. Handles keep few sessions of TLS each by
    // themselves.
    curl_share_setopt(m_share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
    curl_share_setopt(m_share.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_DNS);
    curl_multi_setopt(m_multi.get(), CURLMOPT_MAXCONNECTS, keptConnections);
    m_calls = std::make_shared<CallQueue>(m_multi.get());
    m_settings = {m_share.get(), &m_connections, std::move(certificates)};
    m_thread = std::thread([this] { run(); });
}

CurlFetch::~CurlFetch()
{
    stop();
}

void CurlFetch::stop()
{
    if (!m_thread.joinable())
        return;
    m_stopping = true;
    m_calls->wake();
    m_thread.join();
}

FetchId CurlFetch::start(FetchRequest request, std::shared_ptr<FetchReceiver> receiver)
{
    const FetchId id{++m_lastId};
    // A shared pointer, for a call that waits in the queue is copied.
    const auto exchange = std::make_shared<Exchange>(
        std::make_unique<CurlExchange>(id, std::move(request), std::move(receiver)));
    m_calls->post([this, exchange] { add(std::move(*exchange)); });
    return id;
}

void CurlFetch::cancel(FetchId id)
{
    m_calls->post([this, id] { end(id, CURLE_ABORTED_BY_CALLBACK, CurlError::cancelled()); });
}

void CurlFetch::resume(FetchId id)
{
    m_calls->post([this, id] {
        if (const auto found = m_exchanges.find(id);
            found != m_exchanges.end() && found->second->isRunning())
            found->second->resume();
    });
}

void CurlFetch::connectAhead(const QUrl &url)
{
    if (isWebAddress(url))
        m_calls->post([this, url] { openAhead(url, true); });
}

void CurlFetch::tryAgain(const QUrl &url)
{
    m_calls->post([this, host = CurlExchange::hostOf(url)] { m_budget.forgive(host); });
}

void CurlFetch::favourFilm(bool shortOfBytes)
{
    m_calls->post([this, shortOfBytes] {
        if (m_filmIsShort == shortOfBytes)
            return;
        m_filmIsShort = shortOfBytes;
        m_nextShare = {};
        if (!shortOfBytes) {
            for (CurlExchange *download : runningDownloads())
                download->allow({});
        }
    });
}

void CurlFetch::run()
{
    while (!m_stopping) {
        runCalls();
        int running = 0;
        curl_multi_perform(m_multi.get(), &running);
        takeEnded();
        endSilent();
        startWaiting(); // after the ends, which make room
        shareOut();
        sleep();
    }
    m_calls->close();
    runCalls(); // what was asked for last is told that it is over, too
    while (!m_exchanges.empty())
        end(m_exchanges.begin()->first, CURLE_ABORTED_BY_CALLBACK, CurlError::cancelled());
}

void CurlFetch::runCalls()
{
    for (const auto &call : m_calls->take())
        call();
}

void CurlFetch::add(Exchange exchange)
{
    if (!isWebAddress(exchange->request().url))
        return exchange->tellEnd(
            {Error{ErrorKind::BadUrl, QCoreApplication::translate("Fetch", "Invalid URL")}});
    const FetchId id = exchange->id();
    m_exchanges.emplace(id, std::move(exchange));
    wait(id);
}

/// Behind what is more urgent, and behind what has come before it.
void CurlFetch::wait(FetchId id)
{
    const auto place = [this](FetchId each) {
        return std::pair(m_exchanges.at(each)->request().urgency, each);
    };
    m_waiting.insert(std::ranges::upper_bound(m_waiting, place(id), {}, place), id);
}

void CurlFetch::startWaiting()
{
    std::vector<FetchId> stillWaiting;
    for (const FetchId id : m_waiting) {
        CurlExchange &exchange = *m_exchanges.at(id);
        if (mayStart(exchange))
            begin(exchange);
        else
            stillWaiting.push_back(id);
    }
    m_waiting = std::move(stillWaiting);
}

bool CurlFetch::mayStart(CurlExchange &exchange)
{
    const QString host = exchange.host();
    const auto now = Clock::now();
    if (const auto paused = m_budget.pausedUntil(host, now))
        exchange.holdBack(*paused);
    if (!m_budget.mayStart(host, exchange.request().urgency, now))
        return false;
    if (ProxyBook::shared().proxyFor(exchange.url()))
        return true;
    if (!m_asking.contains(host)) {
        m_asking.insert(host);
        ProxyBook::shared().ask(exchange.url(), [this, calls = m_calls, host] {
            calls->post([this, host] { m_asking.remove(host); });
        });
    }
    return false;
}

void CurlFetch::begin(CurlExchange &exchange)
{
    const auto proxy = ProxyBook::shared().proxyFor(exchange.url());
    exchange.start(idleHandle(), m_settings, ProxyBook::textOf(*proxy));
    if (m_filmIsShort && exchange.request().urgency == FetchUrgency::Download)
        exchange.allow(0); // until the next time that something is shared out
    if (const auto ahead = m_ahead.find(exchange.host());
        ahead != m_ahead.end() && ahead->opener != exchange.id())
        ahead->mayBeRenewed = false; // it is used now, or comes too late
    m_budget.started(exchange.host(), exchange.request().urgency);
    curl_multi_add_handle(m_multi.get(), exchange.handle());
}

/// A request that asks for little: libcurl keeps no connection that was never used for one.
void CurlFetch::openAhead(const QUrl &url, bool mayBeRenewed)
{
    const QUrl little = url.resolved(QUrl(QStringLiteral("/robots.txt")));
    const QString host = CurlExchange::hostOf(url);
    const auto ahead = m_ahead.constFind(host);
    const bool isOnItsWay = ahead != m_ahead.constEnd() && m_exchanges.contains(ahead->opener);
    if (isOnItsWay || m_connections.quietOnes(host) > m_budget.inUse(host))
        return;
    const FetchId id{++m_lastId};
    m_ahead.insert(host, {url, id, CURL_SOCKET_BAD, mayBeRenewed});
    add(std::make_unique<CurlExchange>(
        id, FetchRequest{.url = little, .headOnly = true, .urgency = FetchUrgency::Probe},
        std::make_shared<NobodyReceives>()));
}

bool CurlFetch::isAhead(const CurlExchange &exchange) const
{
    const auto ahead = m_ahead.constFind(exchange.host());
    return ahead != m_ahead.constEnd() && ahead->opener == exchange.id();
}

/// Until something happens. A connection that was opened ahead and is closed before anyone has
/// used it is opened again, once.
void CurlFetch::sleep()
{
    m_ahead.removeIf([this](auto ahead) {
        return ahead->socket != CURL_SOCKET_BAD &&
               !m_connections.isKept(ahead->socket, ahead.key());
    });
    std::vector<curl_waitfd> sockets;
    std::vector<QString> hosts;
    for (auto ahead = m_ahead.cbegin(); ahead != m_ahead.cend(); ++ahead) {
        if (ahead->socket == CURL_SOCKET_BAD)
            continue;
        sockets.push_back({ahead->socket, CURL_WAIT_POLLIN, 0});
        hosts.push_back(ahead.key());
    }
    curl_multi_poll(m_multi.get(), sockets.data(), static_cast<unsigned>(sockets.size()),
                    untilNextDeadline(), nullptr);
    for (size_t i = 0; i < sockets.size(); ++i) {
        if (sockets[i].revents == 0)
            continue;
        const Ahead closed = m_ahead.take(hosts[i]);
        if (closed.mayBeRenewed)
            openAhead(closed.url, false);
    }
}

std::vector<CurlExchange *> CurlFetch::runningDownloads() const
{
    std::vector<CurlExchange *> downloads;
    for (const auto &[id, exchange] : m_exchanges) {
        if (exchange->isRunning() && exchange->request().urgency == FetchUrgency::Download)
            downloads.push_back(exchange.get());
    }
    return downloads;
}

void CurlFetch::shareOut()
{
    const auto now = Clock::now();
    if (!m_filmIsShort || now < m_nextShare)
        return;
    m_nextShare = now + shareTime;
    const auto downloads = runningDownloads();
    for (CurlExchange *download : downloads)
        download->allow(speedBesideFilm / static_cast<qint64>(downloads.size()));
}

void CurlFetch::takeEnded()
{
    int left = 0;
    while (const CURLMsg *message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        CurlExchange *exchange = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &exchange);
        end(exchange->id(), message->data.result, {});
    }
}

void CurlFetch::endSilent()
{
    const auto now = Clock::now();
    std::vector<FetchId> silent;
    for (const auto &[id, exchange] : m_exchanges) {
        if (exchange->isRunning() && !exchange->isHeld() && exchange->silentAt() <= now)
            silent.push_back(id);
    }
    for (const FetchId id : silent)
        end(id, CURLE_OPERATION_TIMEDOUT, CurlError::silent());
}

/// `error`: ours, where it is not libcurl that ends it.
void CurlFetch::end(FetchId id, CURLcode code, std::optional<Error> error)
{
    auto node = m_exchanges.extract(id);
    if (!node)
        return;
    CurlExchange &exchange = *node.mapped();
    FetchEnd end{std::move(error)};
    if (exchange.isRunning()) {
        if (!end.error)
            end = exchange.endOf(code);
        if (exchange.isRefused(code))
            end.pause = m_budget.refused(exchange.host(), exchange.retryAfter(), Clock::now());
        else if (!end.error)
            m_budget.answered(exchange.host());
        exchange.log(end);
        release(exchange);
        if (!end.error && exchange.isRedirected() && !isAhead(exchange)) {
            end.error = exchange.follow();
            if (!end.error) {
                exchange.tellRedirect();
                m_exchanges.insert(std::move(node));
                return wait(id);
            }
        }
    } else {
        std::erase(m_waiting, id);
    }
    exchange.tellEnd(end);
}

void CurlFetch::release(CurlExchange &exchange)
{
    m_budget.ended(exchange.host(), exchange.request().urgency);
    const curl_socket_t socket = m_connections.keep(exchange.handle(), exchange.host());
    if (isAhead(exchange))
        m_ahead[exchange.host()].socket = socket;
    curl_multi_remove_handle(m_multi.get(), exchange.handle());
    CurlEasy easy = exchange.takeHandle();
    if (m_idle.size() < keptHandles)
        m_idle.push_back(std::move(easy));
}

/// In milliseconds; libcurl itself shortens it to what its own clocks need.
int CurlFetch::untilNextDeadline() const
{
    const auto now = Clock::now();
    auto next = now + std::chrono::milliseconds(longestWaitMs);
    for (const auto &[id, exchange] : m_exchanges) {
        if (exchange->isRunning() && !exchange->isHeld())
            next = std::min(next, exchange->silentAt());
    }
    if (m_filmIsShort)
        next = std::min(next, m_nextShare);
    if (const auto pause = m_budget.nextEndOfPause(now); pause && !m_waiting.empty())
        next = std::min(next, *pause);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - now).count();
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left, 0));
}

CurlEasy CurlFetch::idleHandle()
{
    if (m_idle.empty())
        return CurlEasy(curl_easy_init());
    CurlEasy easy = std::move(m_idle.back());
    m_idle.pop_back();
    curl_easy_reset(easy.get());
    return easy;
}

} // namespace tavelo
