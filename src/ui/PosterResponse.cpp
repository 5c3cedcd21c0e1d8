// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterResponse.h"

#include "catalogue/FetchData.h"
#include "ui/PosterImage.h"

#include <QCoroFuture>
#include <QFuture>
#include <QPointer>
#include <QPromise>
#include <QQuickTextureFactory>
#include <QThreadPool>

using namespace std::chrono_literals;

namespace tavelo {

namespace {

QFuture<QImage> decodedOnPool(const QByteArray &bytes, QSize size, int radius)
{
    const auto promise = std::make_shared<QPromise<QImage>>();
    promise->start();
    QThreadPool::globalInstance()->start([promise, bytes, size, radius] {
        promise->addResult(PosterImage::decode(bytes, size, radius));
        promise->finish();
    });
    return promise->future();
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
    load();
}

QCoro::Task<> PosterResponse::load()
{
    const QPointer<PosterResponse> self(this);
    const std::stop_token stop = m_stop.get_token();
    const Result<QByteArray> bytes = co_await fetchData(m_url, 20s, stop);
    if (!self)
        co_return;
    if (bytes && !stop.stop_requested()) {
        const QImage image = co_await decodedOnPool(*bytes, m_size, m_radius);
        if (!self)
            co_return;
        m_image = image;
    }
    Q_EMIT finished();
}

QQuickTextureFactory *PosterResponse::textureFactory() const
{
    return m_image.isNull() ? nullptr : QQuickTextureFactory::textureFactoryForImage(m_image);
}

void PosterResponse::cancel()
{
    QMetaObject::invokeMethod(
        this, [this] { m_stop.request_stop(); }, Qt::QueuedConnection);
}

} // namespace tavelo
