// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterProvider.h"

#include "ui/PosterResponse.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQmlEngine>

#include <mutex>
#include <vector>

namespace tavelo {

/// The responses that the engine has not yet taken. It deletes those that it takes, but leaves the
/// others behind when it ends.
class PosterProvider::Waiting
{
public:
    void add(PosterResponse *response)
    {
        const std::scoped_lock lock(m_mutex);
        std::erase_if(m_responses, [](const auto &pointer) { return pointer.isNull(); });
        m_responses.emplace_back(response);
    }

    void deleteAll()
    {
        for (const QPointer<PosterResponse> &response : m_responses)
            delete response.data();
    }

private:
    std::mutex m_mutex;
    std::vector<QPointer<PosterResponse>> m_responses;
};

PosterProvider::PosterProvider(QQmlEngine &engine)
    : m_waiting(std::make_shared<Waiting>())
{
    // As the engine's last child it goes after the thread that reads pictures, which is another.
    QObject::connect(&engine, &QObject::destroyed, [waiting = m_waiting](QObject *ending) {
        auto *last = new QObject(ending);
        QObject::connect(last, &QObject::destroyed, [waiting] { waiting->deleteAll(); });
    });
}

PosterProvider::~PosterProvider() = default;

QUrl PosterProvider::sourceFor(const QUrl &url, int radius, int attempt)
{
    const QByteArray address = QUrl::toPercentEncoding(url.toString(QUrl::FullyEncoded));
    return QUrl(QStringLiteral("image://poster/") + QString::fromLatin1(address) +
                QLatin1Char('#') + QString::number(radius) + QLatin1Char('/') +
                QString::number(attempt));
}

QQuickImageResponse *PosterProvider::requestImageResponse(const QString &id,
                                                          const QSize &requestedSize)
{
    const qsizetype hash = id.lastIndexOf(QLatin1Char('#'));
    const QByteArray address = QByteArray::fromPercentEncoding(id.left(hash).toUtf8());
    const int radius = hash < 0 ? 0 : id.mid(hash + 1).section(QLatin1Char('/'), 0, 0).toInt();

    auto *response =
        new PosterResponse(QUrl::fromEncoded(address, QUrl::StrictMode), requestedSize, radius);
    response->moveToThread(QCoreApplication::instance()->thread());
    m_waiting->add(response);
    QMetaObject::invokeMethod(response, &PosterResponse::start, Qt::QueuedConnection);
    return response;
}

} // namespace tavelo
