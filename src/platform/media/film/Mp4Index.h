// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/media/film/Mp4Track.h"

#include <QByteArray>

#include <vector>

namespace tavelo {

/// What the index of an MP4, M4V or MOV file tells of its pictures and its sound. It reads the
/// tables where they lie, so it holds on to the bytes and takes hardly more memory than they do;
/// questions take time in proportion to them.
class Mp4Index
{
public:
    /// `moov` is the whole box with its head. Absent when it is damaged, compressed, that of a
    /// fragmented film, of one without pictures and sound, or cuts its media into pieces.
    static std::optional<Mp4Index> parse(const QByteArray &moov);

    double duration() const; // of the longest track, in seconds; 0: unknown

    /// Where all lies that a decoder needs to show the film from exactly `from` seconds on, hence
    /// from the key frame before that, until `until`: of all tracks together. A place beyond the
    /// end means the last key frame. Of a false index the span may reach beyond the file.
    ByteSpan bytesFor(double from, double until) const;

private:
    explicit Mp4Index(QByteArray moov)
        : m_moov(std::move(moov))
    {}

    bool readTracks(QByteArrayView content, const Mp4Clock &film);

    QByteArray m_moov; // what the tracks are views of
    std::vector<Mp4Track> m_pictures;
    std::vector<Mp4Track> m_sounds;
};

} // namespace tavelo
