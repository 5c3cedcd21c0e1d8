// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "playback/AspectMode.h"

namespace tavelo {

QString rawValue(AspectMode mode)
{
    switch (mode) {
    case AspectMode::Fit:
        return QStringLiteral("Fit");
    case AspectMode::Fill:
        return QStringLiteral("Fill");
    case AspectMode::Stretch:
        return QStringLiteral("Stretch");
    }
    Q_UNREACHABLE();
}

std::optional<AspectMode> aspectModeFrom(QStringView text)
{
    for (const AspectMode mode : allAspectModes) {
        if (text == rawValue(mode))
            return mode;
    }
    return {};
}

VideoGravity gravityOf(AspectMode mode)
{
    switch (mode) {
    case AspectMode::Fit:
        return VideoGravity::ResizeAspect;
    case AspectMode::Fill:
        return VideoGravity::ResizeAspectFill;
    case AspectMode::Stretch:
        return VideoGravity::Resize;
    }
    Q_UNREACHABLE();
}

} // namespace tavelo
