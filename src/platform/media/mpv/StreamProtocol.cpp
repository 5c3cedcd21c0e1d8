// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/StreamProtocol.h"

#include "platform/media/FilmSource.h"

#include <mpv/client.h>
#include <mpv/stream_cb.h>

#include <mutex>
#include <unordered_map>

namespace tavelo::StreamProtocol {

namespace {

using StreamPointer = std::shared_ptr<FilmStream>;

constexpr const char *protocolName = "tavelo";

/// Streams that were announced and not opened yet. The player's thread fills it, libmpv's opener
/// threads empty it.
struct Announced
{
    std::mutex mutex;
    std::unordered_map<std::string, std::weak_ptr<FilmStream>> streams;
    int last = 0;
};

Announced &announced()
{
    static Announced instance;
    return instance;
}

StreamPointer take(const std::string &address)
{
    const std::scoped_lock lock(announced().mutex);
    const auto found = announced().streams.extract(address);
    return found ? found.mapped().lock() : nullptr;
}

FilmStream &streamOf(void *cookie)
{
    return **static_cast<StreamPointer *>(cookie);
}

int64_t readBytes(void *cookie, char *buffer, uint64_t count)
{
    return streamOf(cookie).read(buffer, static_cast<qint64>(count));
}

int64_t seekTo(void *cookie, int64_t offset)
{
    return streamOf(cookie).seek(offset).value_or(MPV_ERROR_UNSUPPORTED);
}

int64_t sizeOf(void *cookie)
{
    return streamOf(cookie).size().value_or(MPV_ERROR_UNSUPPORTED);
}

int open(void *, char *address, mpv_stream_cb_info *info)
{
    StreamPointer stream = take(address);
    if (!stream)
        return MPV_ERROR_LOADING_FAILED;
    info->cookie = new StreamPointer(std::move(stream));
    info->read_fn = readBytes;
    info->seek_fn = seekTo;
    info->size_fn = sizeOf;
    info->close_fn = [](void *cookie) { delete static_cast<StreamPointer *>(cookie); };
    info->cancel_fn = [](void *cookie) { streamOf(cookie).cancel(); };
    return 0;
}

} // namespace

void install(mpv_handle *handle)
{
    mpv_stream_cb_add_ro(handle, protocolName, nullptr, open);
}

QByteArray addressOf(StreamPointer stream)
{
    const std::scoped_lock lock(announced().mutex);
    std::erase_if(announced().streams, [](const auto &entry) { return entry.second.expired(); });
    std::string address = std::string(protocolName) + "://" + std::to_string(++announced().last);
    announced().streams.emplace(address, stream);
    return QByteArray::fromStdString(address);
}

} // namespace tavelo::StreamProtocol
