// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaPlayer.h"

#include <QStringView>

#include <array>
#include <optional>

namespace tavelo {

/// How the viewer wants the picture to fill the screen.
enum class AspectMode { Fit, Fill, Stretch };

inline constexpr std::array allAspectModes = {AspectMode::Fit, AspectMode::Fill,
                                              AspectMode::Stretch};

/// The menu label: "Fit", "Fill", "Stretch".
QString rawValue(AspectMode mode);
/// Absent for any other text.
std::optional<AspectMode> aspectModeFrom(QStringView rawValue);
VideoGravity gravityOf(AspectMode mode);

} // namespace tavelo
