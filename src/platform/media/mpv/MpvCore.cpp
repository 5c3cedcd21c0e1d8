// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/MpvCore.h"

#include "platform/media/mpv/MpvLog.h"
#include "platform/media/mpv/StreamProtocol.h"

#include <mpv/client.h>

#include <vector>

namespace tavelo {

namespace {

struct Option
{
    const char *name;
    const char *value;
};

// Nothing of the user's own player, nothing that a film's file could ask for.
constexpr Option options[] = {
    {"config", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"terminal", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-media-keys", "no"},
    {"access-references", "no"},
    {"load-unsafe-playlists", "no"},
    {"ordered-chapters", "no"},
    {"autoload-files", "no"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
    {"audio-display", "no"},
    {"sid", "no"},
    {"resume-playback", "no"},
    {"save-position-on-quit", "no"},
    // One demuxer, and of its formats only films: no playlist, no cue sheet, no edit list. Streams
    // come from us and files are opened by libmpv itself, so no format may open anything.
    {"demuxer", "lavf"},
    {"demuxer-lavf-o", "protocol_whitelist=none,format_whitelist=\"mov,mp4,matroska,webm,avi,ogg,"
                       "mpeg,mpegts,mpegvideo,flv,asf\""},
    // What is fetched of a film is kept beside this, as much again as both together.
    {"demuxer-max-bytes", "32MiB"},
    {"demuxer-max-back-bytes", "32MiB"},
    {"idle", "yes"},
    {"keep-open", "yes"},
    {"keep-open-pause", "no"},
    {"pause", "yes"},
    {"hwdec", "vaapi"},
    {"ao", "pipewire,pulse,alsa"},
    {"audio-client-name", "Tavelo"},
    {"audio-fallback-to-null", "yes"},
    // The picture waits for a renderer; until there is one, the core must not look for it.
    {"vo", "libmpv"},
    {"vid", "no"},
};

constexpr Option headlessOptions[] = {{"vo", "null"}, {"ao", "null"}, {"vid", "auto"}};

} // namespace

std::shared_ptr<MpvCore> MpvCore::create(bool headless)
{
    mpv_handle *handle = mpv_create();
    if (!handle)
        return nullptr;
    const std::shared_ptr<MpvCore> core(new MpvCore(handle));
    bool accepted = true;
    const auto apply = [&](const Option &option) {
        accepted = mpv_set_option_string(handle, option.name, option.value) >= 0 && accepted;
    };
    for (const Option &option : options)
        apply(option);
    if (headless) {
        for (const Option &option : headlessOptions)
            apply(option);
    }
    MpvLog::request(handle);
    // A core that ignores one of these is not the closed one that strangers' files need.
    if (!accepted || mpv_initialize(handle) < 0)
        return nullptr;
    StreamProtocol::install(handle);
    return core;
}

MpvCore::~MpvCore()
{
    mpv_terminate_destroy(m_handle);
}

void MpvCore::command(std::uint64_t reply, const QList<QByteArray> &words)
{
    std::vector<const char *> arguments;
    for (const QByteArray &word : words)
        arguments.push_back(word.constData());
    arguments.push_back(nullptr);
    mpv_command_async(m_handle, reply, arguments.data());
}

void MpvCore::set(const char *property, const QByteArray &value)
{
    const char *text = value.constData();
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_STRING, &text);
}

void MpvCore::set(const char *property, double value)
{
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvCore::set(const char *property, bool value)
{
    int flag = value ? 1 : 0;
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_FLAG, &flag);
}

} // namespace tavelo
