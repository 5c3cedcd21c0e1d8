// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmState.h"

#include "platform/http/ContentRange.h"

#include <utility>

namespace tavelo {

namespace {

constexpr qint64 keptHead = 64LL * 1024; // of what a demuxer looks at, too: boxes, and those behind

} // namespace

FilmState::FilmState(std::shared_ptr<SliceCache> cache, FilmNumber number)
    : m_cache(std::move(cache))
    , m_number(number)
{}

FilmState::Verdict FilmState::judge(const FetchHead &head, qint64 asked)
{
    const BodyVersion version = BodyVersion::of(head);
    const std::scoped_lock lock(m_mutex);
    const bool isPart = head.status == 206;
    if (const auto range = ContentRange::parse(head.contentRange);
        isPart && (!range || range->first != asked))
        return Verdict::WrongPart;
    if (m_opened && m_version.compare(version) == SameFile::No)
        return Verdict::Changed;
    if (m_confirmed && m_ranges && !isPart)
        return Verdict::WrongPart;
    if (!m_confirmed) {
        m_version = version;
        m_size = version.total < 0 ? std::nullopt : std::optional(version.total);
        m_ranges = isPart;
        m_opened = m_confirmed = true;
        changed();
    }
    return isPart ? Verdict::Part : Verdict::Whole;
}

bool FilmState::take(qint64 place, const char *bytes, qint64 count)
{
    m_lastByte = Clock::now();
    const bool fits = m_cache->write(m_number, place, bytes, count);
    changed();
    return fits;
}

void FilmState::endsAt(qint64 size)
{
    const std::scoped_lock lock(m_mutex);
    if (!m_size)
        m_size = size;
    changed();
}

void FilmState::fail(const QString &text)
{
    const std::scoped_lock lock(m_mutex);
    if (m_error.isEmpty())
        m_error = text;
    changed();
}

void FilmState::outdate()
{
    const std::scoped_lock lock(m_mutex);
    m_cache->drop(m_number);
    m_opened = m_confirmed = false;
    m_outdated = true;
    m_size.reset();
    m_version = {};
    m_index.reset();
    changed();
}

void FilmState::setTrouble(const QString &text, Clock::time_point waitsUntil)
{
    const std::scoped_lock lock(m_mutex);
    m_trouble = text;
    m_waitsUntil = waitsUntil;
}

void FilmState::setIndex(std::shared_ptr<const Mp4Index> index, const ByteSpan &where)
{
    const std::scoped_lock lock(m_mutex);
    m_index = std::move(index);
    m_essential.clear();
    for (const ByteSpan &span : {ByteSpan{0, keptHead}, {where.first, where.end + keptHead}}) {
        if (const auto piece = pieceOf(span))
            m_essential.append(*piece);
    }
}

/// As much of it as is held without a gap, from the start of its first block on: the cache takes
/// nothing else back.
std::optional<KeptFilm::Piece> FilmState::pieceOf(ByteSpan span) const
{
    span.first -= span.first % SliceCache::blockBytes;
    span.end = heldUpTo(span.first, span.end);
    const auto bytes = bytesOf(span);
    return bytes && !bytes->isEmpty() ? std::optional(KeptFilm::Piece{span.first, *bytes})
                                      : std::nullopt;
}

std::optional<KeptFilm> FilmState::keptFrom(double seconds) const
{
    const std::scoped_lock lock(m_mutex);
    if (!m_index || !m_size || m_outdated)
        return {};
    KeptFilm kept{{}, m_version, m_essential};
    const auto isHeld = [this](const ByteSpan &span) {
        return heldUpTo(span.first, span.end) >= span.end;
    };
    if (const auto media = pieceOf(KeptFilm::mediaAround(*m_index, seconds, isHeld)))
        kept.pieces.append(*media);
    return kept;
}

void FilmState::recall(const KeptFilm &kept)
{
    for (const KeptFilm::Piece &piece : kept.pieces)
        m_cache->write(m_number, piece.offset, piece.bytes.constData(), piece.bytes.size());
    const std::scoped_lock lock(m_mutex);
    m_version = kept.version;
    m_size = kept.version.total;
    m_opened = true;
    m_confirmed = false;
    changed();
}

void FilmState::clearFailure()
{
    const std::scoped_lock lock(m_mutex);
    m_confirmed = m_confirmed && m_error.isEmpty() && !m_outdated;
    m_error.clear();
    m_trouble.clear();
    m_waitsUntil = {};
    m_outdated = false;
}

bool FilmState::isOpened() const
{
    const std::scoped_lock lock(m_mutex);
    return m_opened;
}

bool FilmState::isConfirmed() const
{
    const std::scoped_lock lock(m_mutex);
    return m_confirmed;
}

bool FilmState::takesRanges() const
{
    const std::scoped_lock lock(m_mutex);
    return m_ranges;
}

bool FilmState::isOutdated() const
{
    const std::scoped_lock lock(m_mutex);
    return m_outdated;
}

std::optional<qint64> FilmState::size() const
{
    const std::scoped_lock lock(m_mutex);
    return m_size;
}

BodyVersion FilmState::version() const
{
    const std::scoped_lock lock(m_mutex);
    return m_version;
}

QString FilmState::error() const
{
    const std::scoped_lock lock(m_mutex);
    return m_error;
}

QString FilmState::trouble() const
{
    const std::scoped_lock lock(m_mutex);
    return m_trouble;
}

QString FilmState::wish() const
{
    const std::scoped_lock lock(m_mutex);
    const auto left = std::chrono::ceil<std::chrono::seconds>(m_waitsUntil - Clock::now()).count();
    return left > 0 ? tr("The Internet Archive asks to wait, next try in %1 s").arg(left)
                    : QString();
}

std::shared_ptr<const Mp4Index> FilmState::index() const
{
    const std::scoped_lock lock(m_mutex);
    return m_index;
}

void FilmState::wait(const std::function<bool()> &holds) const
{
    for (;;) {
        const quint32 seen = m_changes;
        if (holds())
            return;
        m_changes.wait(seen);
    }
}

void FilmState::changed()
{
    ++m_changes;
    m_changes.notify_all();
}

} // namespace tavelo
