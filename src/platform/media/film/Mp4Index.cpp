// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Mp4Index.h"

#include "platform/media/film/Mp4Box.h"

namespace tavelo {

namespace {

constexpr size_t maxTracks = 64;

ByteSpan united(const ByteSpan &a, const ByteSpan &b)
{
    if (a.isEmpty() || b.isEmpty())
        return a.isEmpty() ? b : a;
    return {std::min(a.first, b.first), std::max(a.end, b.end)};
}

} // namespace

std::optional<Mp4Index> Mp4Index::parse(const QByteArray &moov)
{
    const auto content = Mp4Boxes::find(moov, fourCC("moov"));
    if (!content || Mp4Boxes::find(*content, fourCC("mvex")))
        return {};
    const auto mvhd = Mp4Boxes::find(*content, fourCC("mvhd"));
    const auto film = mvhd ? Mp4Clock::read(*mvhd) : std::nullopt;
    Mp4Index index(moov);
    if (!film || !index.readTracks(*content, *film))
        return {};
    return index;
}

bool Mp4Index::readTracks(QByteArrayView content, const Mp4Clock &film)
{
    std::vector<Mp4Track> hidden; // pictures of chapters, covers
    Mp4Boxes boxes(content);
    while (const auto box = boxes.next()) {
        const quint32 kind = box->type == fourCC("trak") ? Mp4Track::kindOf(box->content) : 0;
        const bool isPicture = kind == fourCC("vide");
        if (!isPicture && kind != fourCC("soun"))
            continue;
        const auto track = Mp4Track::read(box->content, film);
        if (!track || m_pictures.size() + m_sounds.size() + hidden.size() == maxTracks)
            return false;
        if (track->count() == 0)
            continue;
        if (isPicture)
            (Mp4Track::isEnabled(box->content) ? m_pictures : hidden).push_back(*track);
        else
            m_sounds.push_back(*track);
    }
    if (m_pictures.empty())
        m_pictures = std::move(hidden);
    return !m_pictures.empty() || !m_sounds.empty();
}

double Mp4Index::duration() const
{
    double longest = 0;
    for (const auto *tracks : {&m_pictures, &m_sounds}) {
        for (const Mp4Track &track : *tracks)
            longest = std::max(longest, track.duration());
    }
    return longest;
}

ByteSpan Mp4Index::bytesFor(double from, double until) const
{
    ByteSpan all;
    double start = from; // a demuxer begins with the sound where the pictures begin
    for (const Mp4Track &track : m_pictures) {
        const qint64 key = track.keyAt(from);
        all = united(all, track.bytesOf(key, std::max(track.sampleAt(until), key) + 1));
        start = std::min(start, track.timeOf(key));
    }
    for (const Mp4Track &track : m_sounds) {
        const qint64 first = track.keyAt(start);
        all = united(all, track.bytesOf(first, std::max(track.sampleAt(until), first) + 1));
    }
    return all;
}

} // namespace tavelo
