// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ByteSpan.h"

#include <QByteArray>

#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace tavelo {

/// A film, as the cache names it.
enum class FilmNumber : int {};

/// The bytes of films that have come, whoever asked for them: what is read ahead, the way back, the
/// index. In blocks, of which those that nobody has touched for longest go first. Any thread.
class SliceCache
{
public:
    static constexpr qint64 blockBytes = 16LL * 1024;
    static constexpr qint64 mostBytes = 64LL * 1024 * 1024;

    /// Keeps bytes of a film. A block keeps what follows on what it holds. False, and nothing is
    /// kept, when the film is known to have other bytes there.
    bool write(FilmNumber film, qint64 place, const char *bytes, qint64 count);
    /// Up to `most` bytes from `place` on; 0 when none are held there.
    qint64 read(FilmNumber film, qint64 place, char *to, qint64 most);
    /// All of `span`, or nothing.
    std::optional<QByteArray> bytesOf(FilmNumber film, const ByteSpan &span);
    /// How far the film is held without a gap from `place` on, not past `end`.
    qint64 heldUpTo(FilmNumber film, qint64 place, qint64 end) const;
    void drop(FilmNumber film);

private:
    using Place = std::pair<FilmNumber, qint64>; // of a block, counted in blocks
    struct Block
    {
        std::vector<char> bytes; // those from the block's start on that have come
        std::list<Place>::iterator age;
    };

    Block &touched(const Place &place);
    void forgetOldest();

    mutable std::mutex m_mutex;
    std::map<Place, Block> m_blocks;
    std::list<Place> m_ages; // touched last comes last
};

} // namespace tavelo
