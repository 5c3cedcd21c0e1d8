// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/CurlHandles.h"
#include "platform/http/Fetch.h"

#include "platform/http/KeptConnections.h"

#include <QString>

#include <array>

namespace tavelo {

/// What all requests of a CurlFetch share.
struct CurlSettings
{
    CURLSH *share = nullptr;
    KeptConnections *connections = nullptr;
    QByteArray certificates = {}; // authorities in PEM besides the system's
};

/// One request on its way through libcurl, on the fetch's thread. A redirect is an end, too, after
/// which it may be started again: the next host has a budget and a proxy of its own.
class CurlExchange
{
public:
    using Clock = std::chrono::steady_clock;

    CurlExchange(FetchId id, FetchRequest request, std::shared_ptr<FetchReceiver> receiver);

    FetchId id() const { return m_id; }
    const FetchRequest &request() const { return m_request; }
    /// Where it is sent now: the request's address, or where that redirects to.
    const QUrl &url() const { return m_url; }
    /// Host and port that it takes a connection of.
    const QString &host() const { return m_host; }
    static QString hostOf(const QUrl &url);
    CURL *handle() const { return m_easy.get(); }
    bool isRunning() const { return m_easy != nullptr; }

    /// `easy` is one of nobody's, new or used before.
    void start(CurlEasy easy, const CurlSettings &settings, const QByteArray &proxy);
    /// When its server will have been silent for too long.
    Clock::time_point silentAt() const { return m_lastSign + m_request.silenceLimit; }
    /// Whether it is we who wait.
    bool isHeld() const { return m_isPutOff || m_isUsedUp; }
    /// The receiver takes bytes again.
    void resume();
    /// How many bytes it may take until it is allowed more; absent: all.
    void allow(std::optional<qint64> bytes);
    /// It cannot start before then.
    void holdBack(Clock::time_point until);

    /// Of what libcurl says at its end.
    FetchEnd endOf(CURLcode code);
    /// Whether the answer names another address to ask; after the end.
    bool isRedirected() const { return m_next.has_value(); }
    /// Asks there when it is started again. An error when it must not.
    std::optional<Error> follow();
    /// The server's wish (RFC 9110, 10.2.3), after the end; absent when it has none.
    std::optional<std::chrono::seconds> retryAfter() const;
    /// Whether the host asks to be left alone, or takes no connections.
    bool isRefused(CURLcode code) const;
    void log(const FetchEnd &end) const;

    /// For the next request to use.
    CurlEasy takeHandle() { return std::move(m_easy); }
    void tellRedirect() { m_receiver->redirected(url()); }
    /// The last thing that is heard of it.
    void tellEnd(const FetchEnd &end) { m_receiver->ended(end); }

private:
    static size_t takeBytes(char *bytes, size_t, size_t count, void *self);
    static size_t takeHeader(char *bytes, size_t, size_t count, void *self);

    void apply(const CurlSettings &settings, const QByteArray &proxy);
    void applyHeaders();
    size_t received(const char *bytes, size_t count);
    bool readHead();
    void goOn();
    QByteArray header(const char *name) const;
    Error errorOf(CURLcode code) const;

    const FetchId m_id;
    const FetchRequest m_request;
    QUrl m_url;
    QString m_host;
    std::optional<QUrl> m_next; // where the answer redirects to
    int m_redirects = 0;
    std::shared_ptr<FetchReceiver> m_receiver;
    CurlEasy m_easy;
    CurlList m_headers;
    std::optional<FetchHead> m_head;
    Clock::time_point m_lastSign = {};
    std::array<char, CURL_ERROR_SIZE> m_errorText = {};
    size_t m_headerBytes = 0;
    std::optional<qint64> m_allowance;
    Clock::time_point m_heldBackUntil = {};
    bool m_isPutOff = false;
    bool m_isUsedUp = false;   // the allowance
    bool m_isUnwanted = false; // the receiver takes no more
};

} // namespace tavelo
