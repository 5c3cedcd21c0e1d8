// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/FilmWants.h"

#include "platform/media/film/Mp4Layout.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace tavelo {

namespace {

constexpr qint64 speedToBeginWith = 1'000'000; // bytes a second of one connection
constexpr qint64 nextTo = 64LL * 1024;         // bytes between what is as good as one piece
constexpr qint64 farAhead = 8LL * 1024 * 1024; // bytes: further than what is kept or prepared
constexpr qint64 soundBefore =
    16LL * 1024;                      // a demuxer begins with the sound of the key frame's time
constexpr double pictureLength = 0.6; // seconds that a start or a seek needs
constexpr qint64 mostIndex = 32LL * 1024 * 1024;          // bytes
constexpr qint64 firstMedia = 128LL * 1024;               // that a start from the beginning needs
constexpr qint64 mostTail = 8LL * 1024 * 1024;            // bytes that may well be an index
constexpr qint64 preparedMedia = 512LL * 1024;            // from the film's start on
constexpr qint64 mostPreparedPicture = 2LL * 1024 * 1024; // from its key frame on

} // namespace

void FilmWants::prepare(double startAt, qint64 mostBytes)
{
    m_preparing = true;
    m_startAt = startAt;
    m_allowance = mostBytes;
}

void FilmWants::forgetIndex()
{
    m_index.reset();
    m_isIndexRead = false;
    m_shown = m_arrived = 0;
    m_media.reset();
    m_missing.reset();
    m_picture.reset();
}

void FilmWants::update(const std::vector<Reading> &readings, std::optional<qint64> speed,
                       bool isHungry)
{
    const qint64 perSecond = speed.value_or(speedToBeginWith);
    // Small ones while nothing is short: whoever goes elsewhere has to wait for their ends.
    const qint64 most = std::clamp(isHungry ? perSecond : perSecond / 10, leastSlice, mostSlice);
    m_slice = static_cast<qint64>(std::bit_floor(static_cast<quint64>(most)));
    m_list.clear();
    for (const Reading &reading : readings) {
        // It may not have noticed yet that its byte has come.
        if (reading.isWaiting && !isOfPicture(reading) &&
            !holds({reading.place, reading.place + 1}))
            want({reading.place, reading.place + m_slice}, m_slice);
    }
    if (!m_state.isOpened()) {
        // Little, for the first bytes tell what is to be asked for in one go; the rest opens the
        // other connections.
        return want({0, 3 * leastSlice}, leastSlice);
    }
    findIndex();
    wantIndex(std::ranges::any_of(readings, [](const Reading &r) { return r.expected < 1; }) ||
              (readings.empty() && m_startAt < 1));
    for (const Reading &reading : readings) {
        wantPicture(reading);
        wantReading(reading);
    }
    if (readings.empty() && m_preparing)
        wantPrepared();
}

void FilmWants::findIndex()
{
    const auto size = m_state.size();
    if ((m_index && m_media) || !size)
        return;
    const Mp4Layout layout = Mp4Layout::of(*size, [this](qint64 place, qint64 count) {
        return m_state.bytesOf({place, place + count});
    });
    if (layout.index && layout.index->size() <= mostIndex)
        m_index = layout.index;
    m_media = layout.media;
    m_missing = layout.missing;
}

void FilmWants::wantIndex(bool fromTheStart)
{
    if (m_isIndexRead)
        return;
    if (m_index && !holds(*m_index)) {
        ByteSpan span = *m_index;
        const qint64 media = mediaStart().value_or(-1);
        // The first picture comes with the index where it lies right behind it.
        const bool isNext = media >= span.end && media < span.end + nextTo;
        if (fromTheStart && isNext)
            span.end = media + firstMedia;
        wantAll(span);
        if (fromTheStart && media >= 0 && !isNext)
            want({media, media + firstMedia}, firstMedia);
    } else if (!m_index && m_missing) {
        // An index at the end is what is left of the film.
        const qint64 rest = m_state.size().value_or(0) - m_missing->first;
        const ByteSpan span{m_missing->first,
                            m_missing->first + (rest <= mostTail ? rest : leastSlice)};
        wantAll(span);
    }
}

void FilmWants::wantPicture(const Reading &reading)
{
    if (!m_state.index())
        return;
    const ByteSpan picture = pictureAt(reading.expected);
    if (reading.expectation > m_shown && !holds(picture))
        wantAll(picture);
    else
        m_shown = std::max(m_shown, reading.expectation);
    // What comes next is asked for before anybody has read that far.
    if (picture.contains(reading.place))
        m_arrived = std::max(m_arrived, reading.expectation);
    if (m_arrived < reading.expectation)
        want({picture.end, picture.end + farAhead}, m_slice);
}

/// It waits for what comes with the picture that the viewer goes to.
bool FilmWants::isOfPicture(const Reading &reading)
{
    return m_state.index() && reading.expectation > m_shown &&
           pictureAt(reading.expected).contains(reading.place);
}

/// The index takes its time for an answer.
ByteSpan FilmWants::pictureAt(double seconds)
{
    if (!m_picture || m_picture->first != seconds) {
        ByteSpan span = m_state.index()->bytesFor(seconds, seconds + pictureLength);
        span.first = std::max<qint64>(span.first - soundBefore, 0);
        m_picture = {seconds, span};
    }
    return m_picture->second;
}

void FilmWants::wantReading(const Reading &reading)
{
    // Until it is at that picture, it reads what it will not go on with.
    if (!m_state.index() || m_arrived >= reading.expectation)
        want({reading.place, (reading.place / m_slice + 4) * m_slice}, m_slice);
}

void FilmWants::wantPrepared()
{
    const qint64 start = mediaStart().value_or(0);
    ByteSpan media{start, start + preparedMedia};
    if (m_state.index() && m_startAt > 0) {
        media = pictureAt(m_startAt);
        media.end = std::min(media.end, media.first + mostPreparedPicture);
    }
    wantAll(media);
    if (!m_state.isConfirmed()) // a connection is wanted in any case
        want({media.end, media.end + farAhead}, leastSlice);
}

std::optional<qint64> FilmWants::mediaStart() const
{
    if (m_media)
        return m_media->first;
    return m_index ? std::optional(m_index->end) : std::nullopt;
}

bool FilmWants::holds(const ByteSpan &span) const
{
    return m_state.heldUpTo(span.first, span.end) >= span.end;
}

void FilmWants::want(ByteSpan span, qint64 most)
{
    if (const auto size = m_state.size())
        span.end = std::min(span.end, *size);
    if (m_preparing)
        most = std::min(most, m_allowance);
    if (!span.isEmpty() && most > 0)
        m_list.push_back({span, most});
}

void FilmWants::wantAll(const ByteSpan &span)
{
    const auto before = m_list.size();
    want(span, mostSlice);
    if (m_list.size() > before)
        m_list.back().isShared = true;
}

} // namespace tavelo
