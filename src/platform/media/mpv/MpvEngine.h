// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/MediaEngine.h"

namespace tavelo {

class MpvEngine : public QObject, public MediaEngine
{
    Q_OBJECT
    Q_INTERFACES(tavelo::MediaEngine)
    Q_PLUGIN_METADATA(IID "tavelo.MediaEngine/1")

public:
    std::unique_ptr<MediaPlayer> createPlayer(const MediaEngineOptions &options) override;
};

} // namespace tavelo
