// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/Utf8.h"

#include <algorithm>

namespace tavelo::Utf8 {

namespace {

// What may follow a lead byte (Unicode, table 3-7).
struct Sequence
{
    int trailing = 0; // bytes after the lead; 0: not a lead byte
    uchar secondFrom = 0x80;
    uchar secondTo = 0xBF;
    char32_t leadBits = 0;
};

Sequence sequenceOf(uchar lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1, 0x80, 0xBF, lead & 0x1Fu};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {2, uchar(lead == 0xE0 ? 0xA0 : 0x80), uchar(lead == 0xED ? 0x9F : 0xBF),
                lead & 0x0Fu};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {3, uchar(lead == 0xF0 ? 0x90 : 0x80), uchar(lead == 0xF4 ? 0x8F : 0xBF),
                lead & 0x07u};
    return {};
}

// One character beyond ASCII, or U+FFFD for the maximal subpart of one; `at` moves past it.
char32_t takeCharacter(const uchar *&at, const uchar *end)
{
    const Sequence sequence = sequenceOf(*at++);
    char32_t character = sequence.leadBits;
    for (int i = 0; i < sequence.trailing; ++i) {
        const uchar from = i == 0 ? sequence.secondFrom : 0x80;
        const uchar to = i == 0 ? sequence.secondTo : 0xBF;
        if (at == end || *at < from || *at > to)
            return QChar::ReplacementCharacter;
        character = (character << 6) | (*at++ & 0x3Fu);
    }
    return sequence.trailing > 0 ? character : char32_t(QChar::ReplacementCharacter);
}

const uchar *endOfAscii(const uchar *at, const uchar *end)
{
    return std::find_if(at, end, [](uchar byte) { return byte >= 0x80; });
}

} // namespace

void appendDecoded(QString &text, QByteArrayView bytes)
{
    const auto *at = reinterpret_cast<const uchar *>(bytes.data());
    const uchar *const end = at + bytes.size();
    while (at != end) {
        const uchar *const plainEnd = endOfAscii(at, end);
        text.append(QLatin1String(reinterpret_cast<const char *>(at), plainEnd - at));
        at = plainEnd;
        while (at != end && *at >= 0x80)
            text.append(QChar::fromUcs4(takeCharacter(at, end)));
    }
}

QString decoded(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    appendDecoded(text, bytes);
    return text;
}

} // namespace tavelo::Utf8
