// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/CurlExchange.h"

#include "platform/Log.h"
#include "platform/http/CurlError.h"
#include "platform/http/UserAgent.h"
#include "platform/http/WebAddress.h"

#include <cerrno>
#include <utility>

namespace tavelo {

namespace {

constexpr size_t mostHeaderBytes = 64 * 1024;       // libcurl 7.88 has no limit of its own
constexpr curl_off_t mostUnwantedBytes = 64 * 1024; // of a body that says why there is none
constexpr int mostRedirects = 5;
constexpr long connectMs = 10'000;
constexpr long bufferBytes = 256 * 1024;

bool isSecure(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

bool isRedirect(int status)
{
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

QByteArray textOf(const FetchRange &range)
{
    const QByteArray last = range.last < 0 ? QByteArray() : QByteArray::number(range.last);
    return QByteArray::number(range.first) + '-' + last;
}

template <typename Value>
Value infoOf(CURL *easy, CURLINFO info)
{
    Value value = {};
    curl_easy_getinfo(easy, info, &value);
    return value;
}

} // namespace

CurlExchange::CurlExchange(FetchId id, FetchRequest request,
                           std::shared_ptr<FetchReceiver> receiver)
    : m_id(id)
    , m_request(std::move(request))
    , m_url(m_request.url)
    , m_host(hostOf(m_url))
    , m_receiver(std::move(receiver))
{}

QString CurlExchange::hostOf(const QUrl &url)
{
    return url.host() + QLatin1Char(':') + QString::number(url.port(isSecure(url) ? 443 : 80));
}

void CurlExchange::start(CurlEasy easy, const CurlSettings &settings, const QByteArray &proxy)
{
    m_easy = std::move(easy);
    apply(settings, proxy);
    applyHeaders();
}

void CurlExchange::apply(const CurlSettings &settings, const QByteArray &proxy)
{
    CURL *easy = handle();
    const auto set = [easy](CURLoption option, auto value) {
        curl_easy_setopt(easy, option, value);
    };
    m_lastSign = Clock::now();
    set(CURLOPT_PRIVATE, static_cast<void *>(this));
    set(CURLOPT_ERRORBUFFER, m_errorText.data());
    set(CURLOPT_SHARE, settings.share);
    set(CURLOPT_URL, m_url.toEncoded(QUrl::RemoveFragment).constData());
    set(CURLOPT_PATH_AS_IS, 1L); // a file may well be called ".."
    // HTTP/2 would put all bodies of a host into one connection, whose window one of them can fill.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_NOSIGNAL, 1L);   // signals belong to the program, which therefore ignores SIGPIPE
    set(CURLOPT_QUICK_EXIT, 1L); // a name look-up that hangs holds up nobody
    set(CURLOPT_NOBODY, m_request.headOnly ? 1L : 0L);
    set(CURLOPT_FOLLOWLOCATION, 0L); // we do, see above
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    // Its own is five minutes. It has no other limit: silence is measured by ourselves.
    set(CURLOPT_CONNECTTIMEOUT_MS, connectMs);
    set(CURLOPT_BUFFERSIZE, bufferBytes);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L); // those of a proxy are no answer
    set(CURLOPT_USERAGENT, userAgent().constData());
    set(CURLOPT_WRITEFUNCTION, &CurlExchange::takeBytes);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    set(CURLOPT_HEADERFUNCTION, &CurlExchange::takeHeader);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_PROXY, proxy.constData()); // also when it is empty, or it asks the environment
    settings.connections->listenTo(easy);
    if (!settings.certificates.isEmpty()) {
        curl_blob blob{const_cast<char *>(settings.certificates.constData()),
                       static_cast<size_t>(settings.certificates.size()), CURL_BLOB_COPY};
        set(CURLOPT_CAINFO_BLOB, &blob);
    }
}

void CurlExchange::applyHeaders()
{
    m_headers.reset(curl_slist_append(nullptr, "Accept-Encoding: identity"));
    if (m_request.range) {
        curl_easy_setopt(handle(), CURLOPT_RANGE, textOf(*m_request.range).constData());
        if (!m_request.ifRange.isEmpty())
            curl_slist_append(m_headers.get(), ("If-Range: " + m_request.ifRange).constData());
    }
    curl_easy_setopt(handle(), CURLOPT_HTTPHEADER, m_headers.get());
}

void CurlExchange::resume()
{
    if (std::exchange(m_isPutOff, false))
        goOn();
}

/// By ourselves: libcurl counts a limit that comes late against all that came before it, and then
/// waits for minutes.
void CurlExchange::allow(std::optional<qint64> bytes)
{
    m_allowance = bytes;
    if (std::exchange(m_isUsedUp, false))
        goOn();
}

void CurlExchange::goOn()
{
    m_lastSign = Clock::now();
    if (!isHeld())
        curl_easy_pause(handle(), CURLPAUSE_CONT);
}

void CurlExchange::holdBack(Clock::time_point until)
{
    if (std::exchange(m_heldBackUntil, until) != until)
        m_receiver->heldBack(std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()));
}

size_t CurlExchange::takeHeader(char *, size_t, size_t count, void *self)
{
    auto *exchange = static_cast<CurlExchange *>(self);
    exchange->m_lastSign = Clock::now();
    exchange->m_headerBytes += count;
    return exchange->m_headerBytes <= mostHeaderBytes ? count : 0;
}

size_t CurlExchange::takeBytes(char *bytes, size_t, size_t count, void *self)
{
    return static_cast<CurlExchange *>(self)->received(bytes, count);
}

size_t CurlExchange::received(const char *bytes, size_t count)
{
    m_lastSign = Clock::now();
    if (!m_head && !readHead())
        return 0;
    if (m_head->status > 299)
        return infoOf<curl_off_t>(handle(), CURLINFO_SIZE_DOWNLOAD_T) > mostUnwantedBytes ? 0
                                                                                          : count;
    if (m_allowance && *m_allowance <= 0) {
        m_isUsedUp = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    switch (m_receiver->bytesArrived(bytes, static_cast<qint64>(count))) {
    case FetchReceiver::Take::More:
        if (m_allowance)
            *m_allowance -= static_cast<qint64>(count);
        return count;
    case FetchReceiver::Take::Later:
        m_isPutOff = true;
        return CURL_WRITEFUNC_PAUSE;
    case FetchReceiver::Take::Stop:
        m_isUnwanted = true;
        break;
    }
    return 0;
}

/// False when its body is not wanted.
bool CurlExchange::readHead()
{
    m_head = FetchHead{static_cast<int>(infoOf<long>(handle(), CURLINFO_RESPONSE_CODE)),
                       m_url,
                       infoOf<curl_off_t>(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T),
                       header("ETag"),
                       header("Last-Modified"),
                       header("Date"),
                       header("Content-Range")};
    if (const QByteArray next = header("Location"); isRedirect(m_head->status) && !next.isEmpty())
        m_next = m_url.resolved(QUrl::fromEncoded(next));
    const bool isBody = m_head->status >= 200 && m_head->status <= 299;
    m_isUnwanted = isBody && !m_receiver->headArrived(*m_head);
    return !m_isUnwanted;
}

QByteArray CurlExchange::header(const char *name) const
{
    curl_header *found = nullptr;
    constexpr int lastRequest = -1;
    return curl_easy_header(handle(), name, 0, CURLH_HEADER, lastRequest, &found) == CURLHE_OK
               ? QByteArray(found->value)
               : QByteArray();
}

FetchEnd CurlExchange::endOf(CURLcode code)
{
    if (code == CURLE_OK && !m_head && !readHead())
        code = CURLE_WRITE_ERROR;
    // A server that says why there is no body has answered, even if it says it at length.
    const bool saidWhy = code == CURLE_WRITE_ERROR && m_head && m_head->status > 299;
    if (code == CURLE_OK || saidWhy)
        return {{}, m_head};
    return {errorOf(code), m_head};
}

Error CurlExchange::errorOf(CURLcode code) const
{
    if (m_isUnwanted)
        return CurlError::cancelled();
    if (code == CURLE_WRITE_ERROR)
        code = CURLE_WEIRD_SERVER_REPLY; // a head without end
    const int systemError = static_cast<int>(infoOf<long>(handle(), CURLINFO_OS_ERRNO));
    return CurlError::of(code, systemError);
}

std::optional<Error> CurlExchange::follow()
{
    const QUrl next = *std::exchange(m_next, {});
    if (!isWebAddress(next) || (isSecure(m_url) && !isSecure(next)))
        return CurlError::unsafeRedirect();
    if (++m_redirects > mostRedirects)
        return CurlError::endlessRedirect();
    m_url = next;
    m_host = hostOf(next);
    m_head.reset();
    m_headerBytes = 0;
    return {};
}

std::optional<std::chrono::seconds> CurlExchange::retryAfter() const
{
    const auto seconds = infoOf<curl_off_t>(handle(), CURLINFO_RETRY_AFTER);
    return seconds > 0 ? std::optional(std::chrono::seconds(seconds)) : std::nullopt;
}

bool CurlExchange::isRefused(CURLcode code) const
{
    if (code == CURLE_COULDNT_CONNECT)
        return infoOf<long>(handle(), CURLINFO_OS_ERRNO) == ECONNREFUSED;
    return m_head && (m_head->status == 429 || m_head->status == 503);
}

void CurlExchange::log(const FetchEnd &end) const
{
    constexpr double usPerMs = 1000;
    const auto wait = infoOf<curl_off_t>(handle(), CURLINFO_STARTTRANSFER_TIME_T);
    const auto total = infoOf<curl_off_t>(handle(), CURLINFO_TOTAL_TIME_T);
    const QByteArray range = m_request.range ? textOf(*m_request.range) : QByteArray("whole");
    qCInfo(logHttp).noquote().nospace()
        << '#' << static_cast<quint64>(m_id) << ' ' << m_host << ' ' << range << ", connection "
        << infoOf<long>(handle(), CURLINFO_LOCAL_PORT)
        << (infoOf<long>(handle(), CURLINFO_NUM_CONNECTS) > 0 ? " new" : " kept") << ", wait "
        << double(wait) / usPerMs << " ms, "
        << infoOf<curl_off_t>(handle(), CURLINFO_SIZE_DOWNLOAD_T) << " bytes in "
        << double(total) / usPerMs << " ms, " << (end.head ? end.head->status : 0) << ' '
        << (end.error        ? end.error->text
            : isRedirected() ? QLatin1String("to ") + hostOf(*m_next)
                             : QStringLiteral("whole"));
}

} // namespace tavelo
