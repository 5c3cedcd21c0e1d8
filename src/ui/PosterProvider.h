// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickAsyncImageProvider>

#include <memory>

class QQmlEngine;

namespace tavelo {

/// "image://poster/<percent-encoded address>#<corner radius>/<attempt>": pictures of the net,
/// fetched on the main thread with the program's HTTP client, decoded and cropped on the thread
/// pool. The engine keeps what an address brought, also where that was nothing: it is asked again
/// under another attempt. For one engine, made on the main thread.
class PosterProvider : public QQuickAsyncImageProvider
{
public:
    explicit PosterProvider(QQmlEngine &engine);
    ~PosterProvider() override;

    static QUrl sourceFor(const QUrl &url, int radius, int attempt);

    /// On the engine's own thread.
    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;

private:
    class Waiting;

    std::shared_ptr<Waiting> m_waiting;
};

} // namespace tavelo
