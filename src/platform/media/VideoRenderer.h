// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <functional>

namespace tavelo {

/// Draws an engine's picture with OpenGL. `start`, `draw` and `stop` are called on the thread that
/// draws, with its OpenGL context current; `stop` before that context goes.
class VideoRenderer
{
public:
    using GetProcAddress = std::function<void *(const char *name)>;

    virtual ~VideoRenderer() = default;

    /// Told on any thread, as soon as there is something new to draw. An empty function ends it;
    /// when that call returns, the former function is no longer running.
    virtual void setFrameListener(std::function<void()> listener) = 0;

    /// False: the engine cannot draw here.
    virtual bool start(GetProcAddress getProcAddress) = 0;
    /// The size in pixels. False: there is no picture to be seen; what was drawn is not one.
    virtual bool draw(unsigned framebuffer, QSize size) = 0;
    virtual void stop() = 0;
};

} // namespace tavelo
