// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/mpv/StreamProtocol.h"

#include "platform/media/FilmSource.h"

#include <mpv/client.h>
#include <mpv/stream_cb.h>

#include <chrono>
#include <list>
#include <mutex>
#include <unordered_map>

namespace tavelo::StreamProtocol {

namespace {

using StreamPointer = std::shared_ptr<FilmStream>;
using Clock = std::chrono::steady_clock;

constexpr const char *protocolName = "tavelo";
constexpr std::chrono::seconds keptClosed{10};

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

/// What libmpv knows a stream by. It may cancel one on another thread while it closes it and a
/// moment after that, so the cookie outlives the stream.
struct Cookie
{
    std::mutex mutex;
    StreamPointer stream; // null: closed
    Clock::time_point closed = {};

    StreamPointer pointer()
    {
        const std::scoped_lock lock(mutex);
        return stream;
    }
};

/// Of all streams that were opened.
struct Cookies
{
    std::mutex mutex;
    std::list<Cookie> list;
};

Cookies &cookies()
{
    static Cookies instance;
    return instance;
}

Cookie *cookieFor(StreamPointer stream)
{
    const std::scoped_lock lock(cookies().mutex);
    cookies().list.remove_if([](Cookie &cookie) {
        const std::scoped_lock closing(cookie.mutex);
        return !cookie.stream && Clock::now() - cookie.closed > keptClosed;
    });
    Cookie &cookie = cookies().list.emplace_back();
    cookie.stream = std::move(stream);
    return &cookie;
}

FilmStream &streamOf(void *cookie)
{
    return *static_cast<Cookie *>(cookie)->stream; // whoever reads it has not closed it
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

void cancelStream(void *cookie)
{
    if (const StreamPointer stream = static_cast<Cookie *>(cookie)->pointer())
        stream->cancel();
}

void closeStream(void *closed)
{
    auto &cookie = *static_cast<Cookie *>(closed);
    StreamPointer stream; // ends after the lock does
    const std::scoped_lock lock(cookie.mutex);
    stream.swap(cookie.stream);
    cookie.closed = Clock::now();
}

int open(void *, char *address, mpv_stream_cb_info *info)
{
    StreamPointer stream = take(address);
    if (!stream)
        return MPV_ERROR_LOADING_FAILED;
    info->cookie = cookieFor(std::move(stream));
    info->read_fn = readBytes;
    info->seek_fn = seekTo;
    info->size_fn = sizeOf;
    info->close_fn = closeStream;
    info->cancel_fn = cancelStream;
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
