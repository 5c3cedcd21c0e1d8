// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpExchange.h"

#include "platform/Log.h"
#include "platform/http/KnownProxies.h"
#include "platform/http/WebAddress.h"

namespace tavelo {

namespace {

constexpr int mostRedirects = 20;

bool isRedirect(int status)
{
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

bool isSecure(const QUrl &url)
{
    return url.scheme() == QLatin1String("https");
}

} // namespace

HttpExchange::HttpExchange(QNetworkAccessManager *network, QNetworkRequest request,
                           std::chrono::milliseconds silenceLimit, std::stop_token stop,
                           qint64 maxBytes)
    : m_network(network)
    , m_request(std::move(request))
    , m_maxBytes(maxBytes)
    , m_onStop(std::move(stop), [this] {
        // A stop may be requested on any thread, and while this object is being built.
        QMetaObject::invokeMethod(
            this, [this] { fail(ErrorKind::Cancelled, tr("The request was cancelled.")); },
            Qt::QueuedConnection);
    })
{
    m_begun.start();
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this,
            [this] { fail(ErrorKind::TimedOut, tr("The request timed out.")); });
    m_silence.start(silenceLimit);
    send();
}

HttpExchange::~HttpExchange() = default;

void HttpExchange::send()
{
    KnownProxies::whenKnown(m_request.url(), this, [this] {
        if (m_network && !m_result)
            sendNow();
    });
}

void HttpExchange::sendNow()
{
    m_reply.reset(m_network->get(m_request));
    QNetworkReply *reply = m_reply.get();
    reply->setParent(this);
    connect(reply, &QNetworkReply::readyRead, this, &HttpExchange::readAvailable);
    for (const auto sign : {&QNetworkReply::encrypted, &QNetworkReply::metaDataChanged})
        connect(reply, sign, &m_silence, qOverload<>(&QTimer::start));
    // Queued: a reply that is finished already must not end us before anyone listens.
    connect(reply, &QNetworkReply::finished, this, &HttpExchange::replyFinished,
            Qt::QueuedConnection);
    if (reply->isFinished())
        QMetaObject::invokeMethod(this, &HttpExchange::replyFinished, Qt::QueuedConnection);
}

void HttpExchange::readAvailable()
{
    if (m_result)
        return;
    m_silence.start();
    if (m_body.size() + m_reply->bytesAvailable() > m_maxBytes)
        return fail(ErrorKind::TooLarge,
                    tr("The response is larger than %1 MiB.").arg(m_maxBytes / (1024 * 1024)));
    m_body += m_reply->readAll();
}

void HttpExchange::replyFinished()
{
    if (!m_reply->isFinished())
        return; // told of the one before it
    readAvailable();
    if (m_result)
        return;
    noteConnection();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // An error status is an answer; a connection that broke in the middle of one is not.
    const auto error = m_reply->error();
    const bool statusError = error >= QNetworkReply::ContentAccessDenied;
    if (error != QNetworkReply::NoError && !(statusError && status > 0))
        return fail(ErrorKind::Transport, m_reply->errorString());
    if (isCutShort())
        return fail(ErrorKind::Transport, tr("The connection ended before the answer did."));
    const QByteArray location = m_reply->rawHeader("Location").trimmed();
    if (isRedirect(status) && !location.isEmpty())
        return redirect(location);
    end(HttpResponse{std::move(m_body), status, {}, m_multiplexed});
}

// The network library takes a connection that is reset for one that ended well, now and then.
bool HttpExchange::isCutShort() const
{
    bool isTold = false;
    const qint64 told = m_reply->rawHeader("Content-Length").toLongLong(&isTold);
    const bool isAsSent = m_reply->rawHeader("Content-Encoding").isEmpty() &&
                          !m_reply->attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool();
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return isTold && isAsSent && status != 304 && m_body.size() < told;
}

// By ourselves: the network library does not always say where one points that it does not follow.
void HttpExchange::redirect(const QByteArray &location)
{
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QUrl next = m_request.url().resolved(QUrl::fromEncoded(location));
    if (!isWebAddress(next))
        return end(HttpResponse{{}, status, QString::fromUtf8(location)});
    if (isSecure(m_request.url()) && !isSecure(next))
        return fail(ErrorKind::Transport, tr("The server redirects from https to http."));
    if (!m_network || ++m_redirects > mostRedirects)
        return fail(ErrorKind::Transport, tr("The server redirects too often."));
    log();
    m_body.clear();
    m_request.setUrl(next);
    send();
}

void HttpExchange::noteConnection()
{
    if (m_reply->attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool())
        return;
    m_multiplexed = m_multiplexed.value_or(true) &&
                    m_reply->attribute(QNetworkRequest::Http2WasUsedAttribute).toBool();
}

void HttpExchange::end(Result<HttpResponse> result)
{
    if (m_result)
        return;
    m_result = std::move(result);
    log();
    m_silence.stop();
    if (m_reply)
        m_reply->disconnect(this);
    Q_EMIT finished();
}

void HttpExchange::log() const
{
    if (!m_reply || !logHttp().isInfoEnabled())
        return;
    const auto attribute = [this](QNetworkRequest::Attribute which) {
        return m_reply->attribute(which);
    };
    const char *way = attribute(QNetworkRequest::SourceIsFromCacheAttribute).toBool() ? "kept"
                      : attribute(QNetworkRequest::Http2WasUsedAttribute).toBool()    ? "HTTP/2"
                                                                                      : "HTTP/1.1";
    const qsizetype size = m_result && *m_result ? (*m_result)->body.size() : m_body.size();
    qCInfo(logHttp).noquote().nospace()
        << m_request.url().host() << ", " << way << ", " << size << " bytes after "
        << m_begun.elapsed() << " ms, "
        << attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() << ' ' << m_reply->error();
}

} // namespace tavelo
