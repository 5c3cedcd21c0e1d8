// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Mp4Sizes.h"

#include "platform/media/film/Mp4Box.h"
#include "platform/media/film/Mp4Numbers.h"

namespace tavelo {

std::optional<Mp4Sizes> Mp4Sizes::read(QByteArrayView stbl)
{
    if (const auto stsz = Mp4Boxes::find(stbl, fourCC("stsz")))
        return readPlain(*stsz);
    const auto stz2 = Mp4Boxes::find(stbl, fourCC("stz2"));
    return stz2 ? readCompact(*stz2) : std::nullopt;
}

// Version and flags, the size of all, the number, the sizes.
std::optional<Mp4Sizes> Mp4Sizes::readPlain(QByteArrayView stsz)
{
    if (stsz.size() < 12)
        return {};
    Mp4Sizes sizes;
    sizes.m_each = qFromBigEndian<quint32>(stsz.data() + 4);
    sizes.m_count = qFromBigEndian<quint32>(stsz.data() + 8);
    if (sizes.m_each > 0)
        return sizes;
    const auto rows = Mp4Rows::read(stsz, 8, 4);
    if (!rows)
        return {};
    sizes.m_rows = *rows;
    return sizes;
}

// Version and flags, the bits of a size, the number, the sizes.
std::optional<Mp4Sizes> Mp4Sizes::readCompact(QByteArrayView stz2)
{
    if (stz2.size() < 12)
        return {};
    Mp4Sizes sizes;
    sizes.m_bits = static_cast<unsigned char>(stz2[7]);
    sizes.m_count = qFromBigEndian<quint32>(stz2.data() + 8);
    if (sizes.m_bits != 4 && sizes.m_bits != 8 && sizes.m_bits != 16)
        return {};
    const qsizetype width = sizes.m_bits == 16 ? 2 : 1;
    const qint64 rowCount = sizes.m_bits == 4 ? (sizes.m_count + 1) / 2 : sizes.m_count;
    const auto rows = Mp4Rows::of(stz2.sliced(12), rowCount, width);
    if (!rows)
        return {};
    sizes.m_rows = *rows;
    return sizes;
}

qint64 Mp4Sizes::size(qint64 sample) const
{
    switch (m_bits) {
    case 4: {
        const auto both = m_rows.value<quint8>(sample / 2);
        return sample % 2 == 0 ? both >> 4 : both & 0x0f;
    }
    case 8:
        return m_rows.value<quint8>(sample);
    case 16:
        return m_rows.value<quint16>(sample);
    default:
        return m_rows.value<quint32>(sample);
    }
}

qint64 Mp4Sizes::sum(qint64 first, qint64 end) const
{
    if (m_each > 0)
        return Mp4Numbers::product(end - first, m_each);
    qint64 bytes = 0; // of 8 Mi samples at most, so it cannot overflow
    for (qint64 sample = first; sample < end; ++sample)
        bytes += size(sample);
    return bytes;
}

} // namespace tavelo
