// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PlayerSurface.h"

#include "platform/media/VideoRenderer.h"

#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QQuickOpenGLUtils>

namespace tavelo {

namespace {

/// The surface's half on the thread that draws. Every call comes with the OpenGL context current,
/// the destructor's too.
class SurfaceRenderer : public QQuickFramebufferObject::Renderer
{
public:
    ~SurfaceRenderer() override { replace({}); }

    void synchronize(QQuickFramebufferObject *item) override
    {
        m_wanted = static_cast<PlayerSurface *>(item)->videoRenderer();
    }

    void render() override
    {
        if (m_wanted != m_renderer)
            replace(m_wanted);
        if (!m_drawing ||
            !m_renderer->draw(framebufferObject()->handle(), framebufferObject()->size()))
            clear();
        QQuickOpenGLUtils::resetOpenGLState();
    }

private:
    void replace(std::shared_ptr<VideoRenderer> renderer)
    {
        if (m_drawing)
            m_renderer->stop();
        m_renderer = std::move(renderer);
        m_drawing = m_renderer && m_renderer->start([](const char *name) {
            return reinterpret_cast<void *>(QOpenGLContext::currentContext()->getProcAddress(name));
        });
    }

    void clear() const
    {
        framebufferObject()->bind(); // libmpv leaves another one
        QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
    }

    std::shared_ptr<VideoRenderer> m_wanted;
    std::shared_ptr<VideoRenderer> m_renderer;
    bool m_drawing = false;
};

} // namespace

PlayerSurface::PlayerSurface(QQuickItem *parent)
    : QQuickFramebufferObject(parent)
{}

PlayerSurface::~PlayerSurface()
{
    setVideoRenderer({});
}

void PlayerSurface::setPlayer(VideoPlayerManager *player)
{
    if (player == m_player)
        return;
    if (m_player)
        m_player->disconnect(this);
    m_player = player;
    if (player) {
        connect(player, &VideoPlayerManager::playerChanged, this, &PlayerSurface::takeRenderer);
        connect(player, &VideoPlayerManager::aspectChanged, this, &PlayerSurface::applyAspect);
        connect(player, &QObject::destroyed, this, [this] {
            m_player = nullptr;
            takeRenderer();
        });
    }
    takeRenderer();
    Q_EMIT playerChanged();
}

void PlayerSurface::takeRenderer()
{
    MediaPlayer *engine = m_player ? m_player->player() : nullptr;
    setVideoRenderer(engine ? engine->renderer() : nullptr);
    applyAspect();
}

void PlayerSurface::applyAspect()
{
    if (MediaPlayer *engine = m_player ? m_player->player() : nullptr)
        engine->setVideoGravity(gravityOf(m_player->aspect()));
}

void PlayerSurface::setVideoRenderer(std::shared_ptr<VideoRenderer> renderer)
{
    if (renderer == m_renderer)
        return;
    if (m_renderer)
        m_renderer->setFrameListener({});
    m_renderer = std::move(renderer);
    if (m_renderer) {
        m_renderer->setFrameListener(
            [this] { QMetaObject::invokeMethod(this, &QQuickItem::update, Qt::QueuedConnection); });
    }
    update();
}

QQuickFramebufferObject::Renderer *PlayerSurface::createRenderer() const
{
    return new SurfaceRenderer;
}

} // namespace tavelo
