// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QQuickAsyncImageProvider>

#include <mutex>
#include <vector>

namespace tavelo {

class PosterResponse;

/// "image://poster/<percent-encoded address>#<corner radius>": pictures of the net, fetched on the
/// main thread with the program's HTTP client, decoded and cropped on the thread pool. Made and
/// destroyed on the main thread, with an engine that is gone by then.
class PosterProvider : public QQuickAsyncImageProvider
{
public:
    ~PosterProvider() override;

    static QUrl sourceFor(const QUrl &url, int radius);

    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;

private:
    std::mutex m_mutex; // requests come on the engine's own threads
    std::vector<QPointer<PosterResponse>> m_responses;
};

} // namespace tavelo
