// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/MediaEngine.h"

#include "platform/media/film/Films.h"

#include <QCoreApplication>
#include <QPluginLoader>
#include <QThreadPool>

namespace tavelo {

namespace {

/// Beside the program, as it is both in the build folder and where it is installed.
QString pluginPath()
{
    return QCoreApplication::applicationDirPath() +
           QLatin1String("/" TAVELO_PLUGIN_PATH "/libtavelo_mpv.so");
}

MediaEngine *loadedEngine()
{
    static QPluginLoader loader(pluginPath());
    return qobject_cast<MediaEngine *>(loader.instance());
}

} // namespace

std::unique_ptr<MediaPlayer> MediaEngine::create(const MediaEngineOptions &options)
{
    MediaEngine *engine = loadedEngine();
    if (!engine)
        return nullptr;
    return engine->createPlayer(
        {options.headless, options.films ? options.films : &Films::shared()});
}

void MediaEngine::preload()
{
    // A loader of its own: they share what they load, not their state.
    QThreadPool::globalInstance()->start([path = pluginPath()] { QPluginLoader(path).load(); });
}

} // namespace tavelo
