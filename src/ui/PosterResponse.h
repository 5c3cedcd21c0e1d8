// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>
#include <QImage>
#include <QQuickImageResponse>
#include <QUrl>

#include <atomic>
#include <stop_token>

namespace tavelo {

/// One poster on its way. Lives on the main thread; the engine cancels and reads it from its own.
/// One that does not come is an empty picture, not an error, which the engine would log; of those
/// that need not be asked for again the PosterBook is told before the end.
class PosterResponse : public QQuickImageResponse
{
    Q_OBJECT

public:
    /// `size` in pixels; an empty one leaves the picture as it is.
    PosterResponse(QUrl url, QSize size, int radius);
    ~PosterResponse() override;

    /// Loads it when its turn has come.
    void start();
    /// Tells the queue when it has ended, also when this is gone by then.
    QCoro::Task<> load();
    const QUrl &url() const { return m_url; }
    /// It has ended, or nobody wants it any more.
    bool isOver() const { return m_over || m_cancelled; }

    QQuickTextureFactory *textureFactory() const override;
    void cancel() override; // on any thread

private:
    void end();

    QUrl m_url;
    QSize m_size;
    int m_radius;
    QImage m_image;
    std::stop_source m_stop;
    bool m_started = false;
    bool m_over = false;
    std::atomic_bool m_cancelled = false;
};

} // namespace tavelo
