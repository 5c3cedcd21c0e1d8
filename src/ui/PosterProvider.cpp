// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterProvider.h"

#include "ui/PosterResponse.h"

#include <QCoreApplication>

namespace tavelo {

PosterProvider::~PosterProvider()
{
    // Whoever still waits here has lost the engine's thread, which alone would have deleted it.
    for (const QPointer<PosterResponse> &response : m_responses)
        delete response.data();
}

QUrl PosterProvider::sourceFor(const QUrl &url, int radius)
{
    if (url.isEmpty())
        return {};
    const QByteArray address = QUrl::toPercentEncoding(url.toString(QUrl::FullyEncoded));
    return QUrl(QStringLiteral("image://poster/") + QString::fromLatin1(address) +
                QLatin1Char('#') + QString::number(radius));
}

QQuickImageResponse *PosterProvider::requestImageResponse(const QString &id,
                                                          const QSize &requestedSize)
{
    const qsizetype hash = id.lastIndexOf(QLatin1Char('#'));
    const QByteArray address = QByteArray::fromPercentEncoding(id.left(hash).toUtf8());
    const int radius = hash < 0 ? 0 : id.mid(hash + 1).toInt();

    auto *response =
        new PosterResponse(QUrl::fromEncoded(address, QUrl::StrictMode), requestedSize, radius);
    response->moveToThread(QCoreApplication::instance()->thread());
    {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(m_responses, [](const auto &pointer) { return pointer.isNull(); });
        m_responses.emplace_back(response);
    }
    QMetaObject::invokeMethod(response, &PosterResponse::start, Qt::QueuedConnection);
    return response;
}

} // namespace tavelo
