// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/HttpStreamFetcher.h"

#include "platform/http/ContentRange.h"
#include "platform/http/UserAgent.h"
#include "platform/media/mpv/HttpStream.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tavelo {

using namespace std::chrono_literals;

namespace {

constexpr auto silenceLimit = 4s;
constexpr qint64 networkBuffer = 1024LL * 1024; // bytes

QThread *theNetworkThread = nullptr;

/// The one thread of all streams; ends with the application object.
QThread *networkThread()
{
    if (theNetworkThread)
        return theNetworkThread;
    theNetworkThread = new QThread;
    theNetworkThread->setObjectName(QStringLiteral("film network"));
    theNetworkThread->start();
    qAddPostRoutine([] {
        theNetworkThread->quit();
        theNetworkThread->wait();
        delete std::exchange(theNetworkThread, nullptr);
    });
    return theNetworkThread;
}

std::chrono::milliseconds delayAfter(int failures)
{
    // Quick while a viewer may be waiting, slow for a film left paused over a server that is gone.
    static constexpr std::chrono::milliseconds delays[] = {0s, 500ms, 1s, 1s, 1s, 1s, 2s, 5s};
    return delays[std::min<std::size_t>(static_cast<std::size_t>(failures), std::size(delays) - 1)];
}

QByteArray validatorOf(const QNetworkReply &reply)
{
    const QByteArray tag = reply.rawHeader("ETag");
    return tag.isEmpty() || tag.startsWith("W/") ? reply.rawHeader("Last-Modified") : tag;
}

} // namespace

HttpStreamFetcher *HttpStreamFetcher::create(const QUrl &url, std::weak_ptr<HttpStream> stream)
{
    auto *fetcher = new HttpStreamFetcher(url, std::move(stream));
    fetcher->moveToThread(networkThread());
    fetcher->post([](HttpStreamFetcher &self) { self.fetchFrom(0, 0); });
    return fetcher;
}

HttpStreamFetcher::HttpStreamFetcher(const QUrl &url, std::weak_ptr<HttpStream> stream)
    : m_url(url)
    , m_stream(std::move(stream))
    , m_silence(this)
    , m_retryDelay(this)
{
    m_silence.setSingleShot(true);
    m_silence.setInterval(silenceLimit);
    connect(&m_silence, &QTimer::timeout, this, &HttpStreamFetcher::retry);
    m_retryDelay.setSingleShot(true);
    connect(&m_retryDelay, &QTimer::timeout, this, &HttpStreamFetcher::request);
}

void HttpStreamFetcher::fetchFrom(qint64 offset, int generation)
{
    m_generation = generation;
    m_offset = offset;
    m_failures = 0;
    request();
}

void HttpStreamFetcher::abandon()
{
    m_silence.stop();
    m_retryDelay.stop();
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->deleteLater(); // which also closes its connection
    m_reply = nullptr;
}

void HttpStreamFetcher::request()
{
    abandon();
    if (m_size && m_offset >= *m_size)
        return;
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkRequest request(m_node.isEmpty() ? m_url : m_node);
    request.setRawHeader("User-Agent", userAgent());
    request.setRawHeader("Accept-Encoding", "identity");
    request.setRawHeader("Range", "bytes=" + QByteArray::number(m_offset) + '-');
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    m_accepted = false;
    m_skip = 0;
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(networkBuffer);
    connect(m_reply, &QNetworkReply::readyRead, this, &HttpStreamFetcher::pump);
    connect(m_reply, &QNetworkReply::finished, this, &HttpStreamFetcher::replyFinished);
    // Before the film is known to be there, how long to wait is the player's decision.
    if (m_opened)
        m_silence.start();
}

void HttpStreamFetcher::headersArrived()
{
    const auto stream = m_stream.lock();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!stream)
        return abandon();
    if (status == 416 && m_offset == 0)
        return permanentFailure(tr("The file is empty."));
    if (status >= 500 && m_opened)
        return retry();
    if ((status < 200 || status > 299) && !m_node.isEmpty())
        return retry(); // the item's own address may lead elsewhere by now
    if (status < 200 || status > 299)
        return permanentFailure(QStringLiteral("HTTP %1").arg(status));
    std::optional<qint64> size;
    if (status == 206) {
        const auto range = ContentRange::parse(m_reply->rawHeader("Content-Range"));
        if (!range || range->first != m_offset)
            return permanentFailure(tr("The server sent the wrong part of the film."));
        size = range->total;
    } else {
        m_skip = m_offset;
        const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid())
            size = length.toLongLong();
    }
    if (m_opened && !continues(size))
        return permanentFailure(tr("The film was changed on the server."));
    m_accepted = true;
    m_node = m_reply->url() == m_url ? QUrl() : m_reply->url();
    if (m_opened)
        return;
    m_opened = true;
    m_validator = validatorOf(*m_reply);
    m_source = m_reply->url();
    m_size = size;
    stream->opened(size, status == 206);
}

/// Whether the reply brings more of the film that the first answer began. Of another node's copy
/// only the size tells: each has its own dates, and tags that are made of them.
bool HttpStreamFetcher::continues(const std::optional<qint64> &size) const
{
    return size == m_size && (m_reply->url() != m_source || validatorOf(*m_reply) == m_validator);
}

void HttpStreamFetcher::pump()
{
    const auto stream = m_stream.lock();
    if (!m_reply || !stream)
        return;
    if (!m_accepted)
        headersArrived();
    while (m_reply && m_accepted && m_reply->bytesAvailable() > 0) {
        if (stream->isFull())
            return m_silence.stop();
        QByteArray bytes = m_reply->read(networkBuffer);
        m_failures = 0;
        m_silence.start();
        if (const qint64 skipped = std::min<qint64>(m_skip, bytes.size()); skipped > 0) {
            m_skip -= skipped;
            bytes.remove(0, skipped);
        }
        m_offset += bytes.size();
        stream->append(bytes, m_generation);
    }
    if (m_reply && m_reply->isFinished())
        replyFinished();
}

void HttpStreamFetcher::replyFinished()
{
    const auto stream = m_stream.lock();
    if (!m_reply || !stream)
        return abandon();
    if (m_reply->bytesAvailable() > 0 && m_accepted)
        return; // the stream is full; its reader will ask for the rest
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!m_accepted && status > 0) {
        headersArrived();
        if (!m_reply)
            return;
    }
    const bool broken = m_reply->error() != QNetworkReply::NoError;
    if (!m_opened)
        return permanentFailure(m_reply->errorString());
    if (m_size ? m_offset < *m_size : broken)
        return retry();
    if (!m_size)
        stream->ended(m_generation);
    abandon();
}

void HttpStreamFetcher::retry()
{
    abandon();
    m_node.clear();
    m_retryDelay.start(delayAfter(m_failures++));
}

void HttpStreamFetcher::permanentFailure(const QString &text)
{
    abandon();
    if (const auto stream = m_stream.lock())
        stream->fail(text);
}

} // namespace tavelo
