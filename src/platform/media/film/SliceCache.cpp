// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/SliceCache.h"

#include <cstring>

namespace tavelo {

namespace {

/// The part of a stretch of bytes that lies in one block.
struct Part
{
    qint64 block = 0;
    qint64 start = 0; // in the block
    qint64 count = 0;
};

Part partAt(qint64 place, qint64 most)
{
    const qint64 start = place % SliceCache::blockBytes;
    return {place / SliceCache::blockBytes, start, std::min(SliceCache::blockBytes - start, most)};
}

} // namespace

bool SliceCache::write(FilmNumber film, qint64 place, const char *bytes, qint64 count)
{
    const std::scoped_lock lock(m_mutex);
    while (count > 0) {
        const Part part = partAt(place, count);
        const auto next = [&] {
            place += part.count;
            bytes += part.count;
            count -= part.count;
        };
        if (part.start > 0 && !m_blocks.contains({film, part.block})) {
            next();
            continue;
        }
        std::vector<char> &held = touched({film, part.block}).bytes;
        const auto size = static_cast<qint64>(held.size());
        if (const qint64 known = std::min(size - part.start, part.count); known > 0) {
            if (std::memcmp(held.data() + part.start, bytes, static_cast<std::size_t>(known)) != 0)
                return false;
        }
        if (part.start <= size && part.start + part.count > size)
            held.insert(held.end(), bytes + (size - part.start), bytes + part.count);
        next();
    }
    forgetOldest();
    return true;
}

qint64 SliceCache::read(FilmNumber film, qint64 place, char *to, qint64 most)
{
    const std::scoped_lock lock(m_mutex);
    qint64 done = 0;
    while (done < most) {
        const Part part = partAt(place + done, most - done);
        if (!m_blocks.contains({film, part.block}))
            break;
        const std::vector<char> &held = touched({film, part.block}).bytes;
        const qint64 count = std::min(static_cast<qint64>(held.size()) - part.start, part.count);
        if (count <= 0)
            break;
        std::memcpy(to + done, held.data() + part.start, static_cast<std::size_t>(count));
        done += count;
        if (count < part.count)
            break;
    }
    return done;
}

std::optional<QByteArray> SliceCache::bytesOf(FilmNumber film, const ByteSpan &span)
{
    if (heldUpTo(film, span.first, span.end) < span.end)
        return {};
    QByteArray bytes(span.size(), Qt::Uninitialized);
    if (read(film, span.first, bytes.data(), bytes.size()) != bytes.size())
        return {};
    return bytes;
}

qint64 SliceCache::heldUpTo(FilmNumber film, qint64 place, qint64 end) const
{
    const std::scoped_lock lock(m_mutex);
    while (place < end) {
        const Part part = partAt(place, end - place);
        const auto found = m_blocks.find({film, part.block});
        if (found == m_blocks.end())
            break;
        const auto size = static_cast<qint64>(found->second.bytes.size());
        if (size <= part.start)
            break;
        const qint64 count = std::min(size - part.start, part.count);
        place += count;
        if (count < part.count)
            break;
    }
    return std::min(place, end);
}

void SliceCache::drop(FilmNumber film)
{
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_ages, [film](const Place &place) { return place.first == film; });
    std::erase_if(m_blocks, [film](const auto &entry) { return entry.first.first == film; });
}

SliceCache::Block &SliceCache::touched(const Place &place)
{
    const auto [found, isNew] = m_blocks.try_emplace(place);
    if (isNew)
        found->second.age = m_ages.insert(m_ages.end(), place);
    else
        m_ages.splice(m_ages.end(), m_ages, found->second.age);
    return found->second;
}

void SliceCache::forgetOldest()
{
    while (static_cast<qint64>(m_blocks.size()) * blockBytes > mostBytes) {
        m_blocks.erase(m_ages.front());
        m_ages.pop_front();
    }
}

} // namespace tavelo
