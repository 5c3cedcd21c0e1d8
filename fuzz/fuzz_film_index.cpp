// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "platform/media/film/Mp4Index.h"
#include "platform/media/film/Mp4Layout.h"

#include <limits>

using namespace tavelo;

namespace {

bool isWithin(const std::optional<ByteSpan> &span, qint64 size)
{
    return !span || (span->first >= 0 && span->first < span->end && span->end <= size);
}

/// The input is the whole film, and what it claims to hold beyond its end is not held.
Mp4Layout layoutOf(const QByteArray &film, qint64 size)
{
    const Mp4Layout layout = Mp4Layout::of(size, [&](qint64 offset, qint64 count) {
        require(offset >= 0 && count > 0 && offset + count <= size);
        return offset + count <= film.size() ? std::optional(film.mid(offset, count))
                                             : std::nullopt;
    });
    require(isWithin(layout.index, size) && isWithin(layout.media, size) &&
            isWithin(layout.missing, size));
    return layout;
}

void ask(const Mp4Index &index)
{
    require(index.duration() >= 0);
    for (const double from : {0.0, 0.5, 1e4, 1e300}) {
        for (const double length : {0.0, 2.0, std::numeric_limits<double>::infinity()}) {
            const ByteSpan span = index.bytesFor(from, from + length);
            require(span.first >= 0 && span.first <= span.end);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray film = fuzzInput(data, size);
    const Mp4Layout layout = layoutOf(film, film.size());
    layoutOf(film, std::numeric_limits<qint64>::max());
    require(!layout.missing);
    const ByteSpan whole = layout.index.value_or(ByteSpan{0, film.size()});
    // A copy of exactly these bytes, so that reading past them is seen.
    const QByteArray moov = fuzzInput(data + whole.first, static_cast<std::size_t>(whole.size()));
    if (const auto index = Mp4Index::parse(moov))
        ask(*index);
    return 0;
}
