// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/ByteSpan.h"
#include "platform/media/film/Mp4Clock.h"
#include "platform/media/film/Mp4Runs.h"
#include "platform/media/film/Mp4Sizes.h"

namespace tavelo {

/// One track of a film: when its samples are due, and where they lie in the file. Times are those
/// of the film, in seconds; samples count from 0 in the order of decoding. A view of the index;
/// every question takes at most one walk over its tables.
class Mp4Track
{
public:
    /// What the track is of ("vide", "soun", …); 0 when it does not tell.
    static quint32 kindOf(QByteArrayView trak);

    /// Whether it is played without being chosen.
    static bool isEnabled(QByteArrayView trak);

    /// `trak` is the content of that box; `film` the clock of the whole. Absent when it is damaged,
    /// or plays its media in more than one piece.
    static std::optional<Mp4Track> read(QByteArrayView trak, const Mp4Clock &film);

    qint64 count() const { return m_sizes.count(); }
    double duration() const { return m_clock.seconds(); }

    // Of a track that has samples.
    /// The last sample that is decoded at `seconds` or before; the first when there is none.
    qint64 sampleAt(double seconds) const;
    /// The last sample that is shown at `seconds` or before and needs no other to be decoded; the
    /// first when there is none.
    qint64 keyAt(double seconds) const;
    /// When it is decoded.
    double timeOf(qint64 sample) const;
    /// Where the samples from `first` up to, and without, `end` lie, and what is between them.
    ByteSpan bytesOf(qint64 first, qint64 end) const;

private:
    bool readTimes(QByteArrayView stbl);
    bool readPlaces(QByteArrayView stbl);
    bool readEdits(QByteArrayView elst, const Mp4Clock &film);
    qint64 ticks(double seconds) const;
    qint64 sampleAtTick(qint64 tick) const;
    qint64 chunkPlace(qint64 chunk) const;

    Mp4Clock m_clock;
    double m_start = 0;            // the tick of the media at second 0 of the film
    Mp4Sizes m_sizes;              // of the samples
    Mp4Rows m_durations;           // runs (stts)
    Mp4Rows m_delays;              // runs: from decoding to showing (ctts); may be empty
    std::optional<Mp4Rows> m_keys; // numbers of samples, from 1 (stss); absent: all are
    Mp4Rows m_chunkRuns;           // first chunk, from 1, and samples in each (stsc)
    Mp4Rows m_chunks;              // places (stco, co64)
    bool m_isWide = false;         // the places have 64 bits
};

} // namespace tavelo
