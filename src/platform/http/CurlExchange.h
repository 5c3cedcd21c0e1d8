// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/CurlHandles.h"
#include "platform/http/Fetch.h"

#include <QString>

#include <array>

namespace tavelo {

/// What all requests of a CurlFetch share.
struct CurlSettings
{
    CURLSH *share = nullptr;
    QByteArray certificates = {}; // authorities in PEM besides the system's
};

/// One request on its way through libcurl, on the fetch's thread.
class CurlExchange
{
public:
    using Clock = std::chrono::steady_clock;

    CurlExchange(FetchId id, FetchRequest request, std::shared_ptr<FetchReceiver> receiver);

    FetchId id() const { return m_id; }
    const FetchRequest &request() const { return m_request; }
    /// Host and port that it takes a connection of.
    const QString &host() const { return m_host; }
    CURL *handle() const { return m_easy.get(); }
    bool isRunning() const { return m_easy != nullptr; }

    /// `easy` is one of nobody's, new or used before.
    void start(CurlEasy easy, const CurlSettings &settings, const QString &proxy);
    /// When its server will have been silent for too long.
    Clock::time_point silentAt() const { return m_lastSign + m_request.silenceLimit; }
    bool isPutOff() const { return m_isPutOff; }
    void resume();
    /// In bytes a second; 0: none.
    void limitSpeed(curl_off_t most);

    /// Of what libcurl says at its end.
    FetchEnd endOf(CURLcode code);
    /// The server's wish (RFC 9110, 10.2.3), after the end; absent when it has none.
    std::optional<std::chrono::seconds> retryAfter() const;
    /// Whether the host asks to be left alone, or takes no connections.
    bool isRefused(CURLcode code) const;
    void log(const FetchEnd &end) const;

    /// For the next request to use.
    CurlEasy takeHandle() { return std::move(m_easy); }
    /// The last thing that is heard of it.
    void tellEnd(const FetchEnd &end) { m_receiver->ended(end); }

private:
    static size_t takeBytes(char *bytes, size_t, size_t count, void *self);
    static size_t takeHeader(char *bytes, size_t, size_t count, void *self);

    void apply(const CurlSettings &settings, const QString &proxy);
    void applyHeaders();
    size_t received(const char *bytes, size_t count);
    bool readHead();
    QByteArray header(const char *name) const;
    Error errorOf(CURLcode code) const;

    const FetchId m_id;
    const FetchRequest m_request;
    const QString m_host;
    std::shared_ptr<FetchReceiver> m_receiver;
    CurlEasy m_easy;
    CurlList m_headers;
    std::optional<FetchHead> m_head;
    Clock::time_point m_lastSign = {};
    std::array<char, CURL_ERROR_SIZE> m_errorText = {};
    size_t m_headerBytes = 0;
    bool m_isPutOff = false;
    bool m_isUnwanted = false; // the receiver takes no more
};

} // namespace tavelo
