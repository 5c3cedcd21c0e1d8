// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvRenderer.h"

#include "platform/media/mpv/MpvCore.h"

#include <mpv/render_gl.h>

namespace tavelo {

MpvRenderer::~MpvRenderer()
{
    stop();
}

void MpvRenderer::setFrameListener(std::function<void()> listener)
{
    const std::scoped_lock lock(m_mutex);
    m_listener = std::move(listener);
}

void MpvRenderer::setBlank(bool blank)
{
    m_blank = blank;
    frameReady();
}

void MpvRenderer::frameReady()
{
    const std::scoped_lock lock(m_mutex);
    if (m_listener)
        m_listener();
}

bool MpvRenderer::start(GetProcAddress getProcAddress)
{
    if (m_context)
        return true;
    auto core = m_core.lock();
    if (!core)
        return false;
    mpv_opengl_init_params gl{[](void *lookup, const char *name) {
                                  return (*static_cast<GetProcAddress *>(lookup))(name);
                              },
                              &getProcAddress};
    char api[] = MPV_RENDER_API_TYPE_OPENGL;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_API_TYPE, api},
                                     {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&m_context, core->handle(), parameters) < 0) {
        m_context = nullptr;
        return false;
    }
    mpv_render_context_set_update_callback(
        m_context, [](void *self) { static_cast<MpvRenderer *>(self)->frameReady(); }, this);
    core->set("vid", QByteArray("auto"));
    m_drawnCore = std::move(core);
    return true;
}

bool MpvRenderer::draw(unsigned framebuffer, QSize size)
{
    if (!m_context)
        return false;
    mpv_render_context_update(m_context);
    mpv_opengl_fbo target{static_cast<int>(framebuffer), size.width(), size.height(), 0};
    int flip = 0;
    int wait = 0;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &target},
                                     {MPV_RENDER_PARAM_FLIP_Y, &flip},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &wait},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    // Also when it is not to be seen: libmpv waits for its frames to be drawn.
    mpv_render_context_render(m_context, parameters);
    return !m_blank;
}

void MpvRenderer::stop()
{
    if (!m_context)
        return;
    mpv_render_context_set_update_callback(m_context, nullptr, nullptr);
    // A film must not look for a picture while there is nowhere to draw it.
    m_drawnCore->set("vid", QByteArray("no"));
    mpv_render_context_free(m_context);
    m_context = nullptr;
    m_drawnCore.reset();
}

} // namespace tavelo
