// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/FilmSource.h"
#include "platform/media/MediaPlayer.h"

#include <QtPlugin>

namespace tavelo {

struct MediaEngineOptions
{
    /// Plays without a sound device and without a surface, at the film's own pace.
    bool headless = false;
    /// Where it gets films that are not files; outlives the player. Null: those of the process.
    FilmSource *films = nullptr;
};

/// What an engine's plugin offers. Engines are plugins because they bring hundreds of libraries
/// along, none of which is wanted before the first film is played.
class MediaEngine
{
public:
    virtual ~MediaEngine() = default;

    /// Null when the engine cannot start.
    virtual std::unique_ptr<MediaPlayer> createPlayer(const MediaEngineOptions &options) = 0;

    /// Loads the plugin at the first call. Null when it is missing or cannot start. Its users link
    /// the interface into their program, where the plugin finds it.
    static std::unique_ptr<MediaPlayer> create(const MediaEngineOptions &options = {});
    /// Loads the plugin in the background, so that create() finds it loaded. Any number of times.
    static void preload();
};

} // namespace tavelo

Q_DECLARE_INTERFACE(tavelo::MediaEngine, "tavelo.MediaEngine/1")
