// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "playback/VideoPlayerManager.h"

#include <QQuickFramebufferObject>

namespace tavelo {

class VideoRenderer;

/// Where the film is seen. One for the window: it may change its place and its parent within that
/// window, and the engine's drawing context stays.
class PlayerSurface : public QQuickFramebufferObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tavelo::VideoPlayerManager *player READ player WRITE setPlayer NOTIFY playerChanged)

public:
    explicit PlayerSurface(QQuickItem *parent = nullptr);
    ~PlayerSurface() override;

    VideoPlayerManager *player() const { return m_player; }
    void setPlayer(VideoPlayerManager *player);

    /// What is drawn; null draws black. setPlayer() keeps it up to date.
    const std::shared_ptr<VideoRenderer> &videoRenderer() const { return m_renderer; }
    void setVideoRenderer(std::shared_ptr<VideoRenderer> renderer);

    Renderer *createRenderer() const override;

Q_SIGNALS:
    void playerChanged();

private:
    void takeRenderer();
    void applyAspect();

    VideoPlayerManager *m_player = nullptr;
    std::shared_ptr<VideoRenderer> m_renderer;
};

} // namespace tavelo
