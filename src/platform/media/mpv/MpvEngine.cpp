// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvEngine.h"

#include "platform/media/mpv/MpvCore.h"
#include "platform/media/mpv/MpvPlayer.h"

#include <clocale>

namespace tavelo {

std::unique_ptr<MediaPlayer> MpvEngine::createPlayer(const MediaEngineOptions &options)
{
    // libmpv reads its options with the C library, which would expect the user's decimal comma.
    std::setlocale(LC_NUMERIC, "C");
    auto core = MpvCore::create(options.headless);
    return core ? std::make_unique<MpvPlayer>(std::move(core), *options.films) : nullptr;
}

} // namespace tavelo
