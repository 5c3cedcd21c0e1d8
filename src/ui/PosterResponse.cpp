// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterResponse.h"

#include "catalogue/FetchData.h"
#include "platform/ThreadPool.h"
#include "ui/PosterBook.h"
#include "ui/PosterImage.h"
#include "ui/PosterQueue.h"

#include <QCoroFuture>
#include <QPointer>
#include <QQuickTextureFactory>
#include <QScopeGuard>

using namespace std::chrono_literals;

namespace tavelo {

namespace {

/// It would be the same the next time.
bool isFinal(const Error &error)
{
    return error.httpStatus == 404 || error.httpStatus == 410 ||
           error.kind == ErrorKind::TooLarge || error.kind == ErrorKind::BadUrl;
}

} // namespace

PosterResponse::PosterResponse(QUrl url, QSize size, int radius)
    : m_url(std::move(url))
    , m_size(size)
    , m_radius(radius)
{}

PosterResponse::~PosterResponse()
{
    m_stop.request_stop();
}

void PosterResponse::start()
{
    PosterQueue::shared().add(this);
}

QCoro::Task<> PosterResponse::load()
{
    const auto turn = qScopeGuard([] { PosterQueue::shared().ended(); });
    const QPointer<PosterResponse> self(this);
    const std::stop_token stop = m_stop.get_token();
    m_started = true;
    const Result<QByteArray> bytes = co_await fetchData(
        m_url, 20s, stop, HttpClient::shared(), PosterImage::maxBytes, HttpClient::Priority::Low);
    if (!self)
        co_return;
    if (bytes && !stop.stop_requested()) {
        const QFuture<QImage> decoded =
            runOnPool([data = *bytes, size = m_size, radius = m_radius] {
                return PosterImage::decode(data, size, radius);
            });
        const QImage image = co_await decoded;
        if (!self)
            co_return;
        m_image = image;
    }
    if (bytes ? m_image.isNull() && !stop.stop_requested() : isFinal(bytes.error()))
        PosterBook::shared().setNone(m_url);
    end();
}

void PosterResponse::end()
{
    m_over = true;
    Q_EMIT finished();
}

QQuickTextureFactory *PosterResponse::textureFactory() const
{
    return m_image.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(m_image);
}

void PosterResponse::cancel()
{
    m_cancelled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_stop.request_stop();
            if (!m_started && !m_over)
                end();
        },
        Qt::QueuedConnection);
}

} // namespace tavelo
