// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/MediaEngine.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace tavelo {

namespace {

MediaEngine *loadedEngine()
{
    // Beside the program, as it is both in the build folder and where it is installed.
    static QPluginLoader loader(QCoreApplication::applicationDirPath() +
                                QLatin1String("/" TAVELO_PLUGIN_PATH "/libtavelo_mpv.so"));
    return qobject_cast<MediaEngine *>(loader.instance());
}

} // namespace

std::unique_ptr<MediaPlayer> MediaEngine::create(const MediaEngineOptions &options)
{
    MediaEngine *engine = loadedEngine();
    return engine ? engine->createPlayer(options) : nullptr;
}

} // namespace tavelo
