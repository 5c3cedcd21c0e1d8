// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/VideoRenderer.h"

#include <atomic>
#include <memory>
#include <mutex>

struct mpv_render_context;

namespace tavelo {

class MpvCore;

/// The picture of one core. Holds the core only between `start` and `stop`.
class MpvRenderer : public VideoRenderer
{
public:
    explicit MpvRenderer(std::weak_ptr<MpvCore> core)
        : m_core(std::move(core))
    {}
    ~MpvRenderer() override;

    /// Without a picture from now on, or with libmpv's; any thread.
    void setBlank(bool blank);

    void setFrameListener(std::function<void()> listener) override;
    bool start(GetProcAddress getProcAddress) override;
    bool draw(unsigned framebuffer, QSize size) override;
    void stop() override;

private:
    void frameReady();

    std::weak_ptr<MpvCore> m_core;
    std::shared_ptr<MpvCore> m_drawnCore;
    mpv_render_context *m_context = nullptr;
    std::atomic_bool m_blank = true;
    std::mutex m_mutex; // guards m_listener
    std::function<void()> m_listener;
};

} // namespace tavelo
