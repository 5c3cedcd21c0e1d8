// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Mp4Track.h"

#include "platform/media/film/Mp4Box.h"

#include <limits>

namespace tavelo {

namespace {

constexpr qsizetype chunkRunWidth = 12;

std::optional<QByteArrayView> findPath(QByteArrayView content, std::initializer_list<quint32> path)
{
    std::optional<QByteArrayView> found = content;
    for (const quint32 type : path) {
        if (found)
            found = Mp4Boxes::find(*found, type);
    }
    return found;
}

/// The table in the box of that type, behind version and flags. No rows when there is no such box,
/// absent when it is damaged.
std::optional<Mp4Rows> table(QByteArrayView stbl, quint32 type, qsizetype width)
{
    const auto content = Mp4Boxes::find(stbl, type);
    return content ? Mp4Rows::read(*content, 4, width) : Mp4Rows();
}

/// So that each row stands for chunks of its own.
bool isAscending(const Mp4Rows &chunkRuns)
{
    qint64 last = 0;
    for (qint64 row = 0; row < chunkRuns.count(); ++row) {
        const qint64 first = chunkRuns.value<quint32>(row);
        if (first <= last || (row == 0 && first != 1))
            return false;
        last = first;
    }
    return true;
}

} // namespace

quint32 Mp4Track::kindOf(QByteArrayView trak)
{
    const auto hdlr = findPath(trak, {fourCC("mdia"), fourCC("hdlr")});
    return hdlr && hdlr->size() >= 12 ? qFromBigEndian<quint32>(hdlr->data() + 8) : 0;
}

bool Mp4Track::isEnabled(QByteArrayView trak)
{
    const auto tkhd = Mp4Boxes::find(trak, fourCC("tkhd")); // version, flags
    return tkhd && tkhd->size() >= 4 && (tkhd->at(3) & 1) != 0;
}

std::optional<Mp4Track> Mp4Track::read(QByteArrayView trak, const Mp4Clock &film)
{
    const auto mdhd = findPath(trak, {fourCC("mdia"), fourCC("mdhd")});
    const auto clock = mdhd ? Mp4Clock::read(*mdhd) : std::nullopt;
    const auto stbl = findPath(trak, {fourCC("mdia"), fourCC("minf"), fourCC("stbl")});
    const auto sizes = stbl ? Mp4Sizes::read(*stbl) : std::nullopt;
    if (!clock || !sizes)
        return {};
    Mp4Track track;
    track.m_clock = *clock;
    track.m_sizes = *sizes;
    const auto elst = findPath(trak, {fourCC("edts"), fourCC("elst")});
    if (!track.readTimes(*stbl) || !track.readPlaces(*stbl) ||
        (elst && !track.readEdits(*elst, film)))
        return {};
    return track;
}

bool Mp4Track::readTimes(QByteArrayView stbl)
{
    const auto durations = table(stbl, fourCC("stts"), Mp4Runs::width);
    const auto delays = table(stbl, fourCC("ctts"), Mp4Runs::width);
    const auto keys = table(stbl, fourCC("stss"), 4);
    if (!durations || !delays || !keys)
        return false;
    m_durations = *durations;
    m_delays = *delays;
    if (Mp4Boxes::find(stbl, fourCC("stss")))
        m_keys = *keys;
    return true;
}

bool Mp4Track::readPlaces(QByteArrayView stbl)
{
    m_isWide = Mp4Boxes::find(stbl, fourCC("co64")).has_value();
    const auto chunks = m_isWide ? table(stbl, fourCC("co64"), 8) : table(stbl, fourCC("stco"), 4);
    const auto chunkRuns = table(stbl, fourCC("stsc"), chunkRunWidth);
    if (!chunks || !chunkRuns || !isAscending(*chunkRuns))
        return false;
    m_chunks = *chunks;
    m_chunkRuns = *chunkRuns;
    return true;
}

// Pauses, then where in the media the track begins: all that films have as a rule.
bool Mp4Track::readEdits(QByteArrayView elst, const Mp4Clock &film)
{
    const bool isWide = !elst.isEmpty() && elst[0] == 1;
    const auto edits = Mp4Rows::read(elst, 4, isWide ? 20 : 12);
    if (!edits)
        return false;
    double pause = 0;
    for (qint64 row = 0; row < edits->count(); ++row) {
        const qint64 length = isWide ? edits->value<qint64>(row) : edits->value<quint32>(row);
        const qint64 begin = isWide ? edits->value<qint64>(row, 8) : edits->value<qint32>(row, 4);
        if (begin < 0) {
            pause += static_cast<double>(length) / film.scale;
        } else {
            m_start = static_cast<double>(begin) - pause * m_clock.scale;
            return row == edits->count() - 1;
        }
    }
    return edits->count() == 0;
}

qint64 Mp4Track::ticks(double seconds) const
{
    const double tick = seconds * m_clock.scale + m_start;
    if (!(tick > 0)) // neither is what is no number
        return 0;
    return tick < static_cast<double>(Mp4Numbers::farthest) ? static_cast<qint64>(tick)
                                                            : Mp4Numbers::farthest;
}

qint64 Mp4Track::sampleAtTick(qint64 tick) const
{
    Mp4Runs runs(m_durations);
    qint64 sample = 0;
    while (!runs.isAtEnd()) {
        if (tick < runs.end()) {
            sample = runs.first() + (tick - runs.sum()) / runs.number();
            break;
        }
        sample = runs.first() + runs.length() - 1;
        runs.nextRow();
    }
    return std::clamp<qint64>(sample, 0, count() - 1);
}

qint64 Mp4Track::sampleAt(double seconds) const
{
    return sampleAtTick(ticks(seconds));
}

qint64 Mp4Track::keyAt(double seconds) const
{
    if (!m_keys)
        return sampleAt(seconds);
    const qint64 tick = ticks(seconds);
    Mp4Runs durations(m_durations);
    Mp4Runs delays(m_delays);
    qint64 key = 0;
    for (qint64 row = 0; row < m_keys->count(); ++row) {
        const qint64 sample = qint64(m_keys->value<quint32>(row)) - 1;
        if (sample < key || sample >= count())
            break; // the numbers rise
        durations.goTo(sample);
        delays.goTo(sample);
        const qint64 decoded = durations.tickOf(sample);
        const qint64 shown = decoded + (delays.isAtEnd() ? 0 : delays.signedNumber());
        if (shown > tick)
            break;
        key = sample;
    }
    return key;
}

double Mp4Track::timeOf(qint64 sample) const
{
    Mp4Runs durations(m_durations);
    durations.goTo(sample);
    return (static_cast<double>(durations.tickOf(sample)) - m_start) / m_clock.scale;
}

qint64 Mp4Track::chunkPlace(qint64 chunk) const
{
    if (!m_isWide)
        return m_chunks.value<quint32>(chunk);
    return static_cast<qint64>(
        std::min(m_chunks.value<quint64>(chunk), quint64(Mp4Numbers::farthest)));
}

ByteSpan Mp4Track::bytesOf(qint64 first, qint64 end) const
{
    ByteSpan all{std::numeric_limits<qint64>::max(), 0};
    qint64 sample = 0; // the first of the row
    for (qint64 row = 0; row < m_chunkRuns.count() && sample < end; ++row) {
        const qint64 chunk = qint64(m_chunkRuns.value<quint32>(row)) - 1;
        const qint64 each = m_chunkRuns.value<quint32>(row, 4);
        const bool isLast = row == m_chunkRuns.count() - 1;
        const qint64 chunkEnd =
            isLast ? m_chunks.count()
                   : std::min(m_chunks.count(), qint64(m_chunkRuns.value<quint32>(row + 1)) - 1);
        if (each == 0 || chunk >= chunkEnd)
            continue;
        for (qint64 i = std::max<qint64>(first - sample, 0) / each; i < chunkEnd - chunk; ++i) {
            const qint64 chunkFirst = sample + i * each;
            const qint64 from = std::max(chunkFirst, first);
            const qint64 until = std::min(chunkFirst + each, end);
            if (from >= until)
                break;
            const qint64 place =
                Mp4Numbers::sum(chunkPlace(chunk + i), m_sizes.sum(chunkFirst, from));
            all.first = std::min(all.first, place);
            all.end = std::max(all.end, Mp4Numbers::sum(place, m_sizes.sum(from, until)));
        }
        sample += (chunkEnd - chunk) * each;
    }
    return all.isEmpty() ? ByteSpan() : all;
}

} // namespace tavelo
