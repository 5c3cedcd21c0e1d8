// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/Bencode.h"

#include "platform/Utf8.h"

namespace tavelo {

std::optional<qint64> Bencode::integer() const
{
    return kind() == Kind::Int ? std::optional(node().payload()) : std::nullopt;
}

std::optional<QByteArrayView> Bencode::bytes() const
{
    return kind() == Kind::Bytes ? std::optional(slice()) : std::nullopt;
}

std::optional<QString> Bencode::string() const
{
    return kind() == Kind::Bytes ? std::optional(Utf8::decoded(slice())) : std::nullopt;
}

std::optional<QHash<QString, Bencode>> Bencode::dict() const
{
    if (!isDict())
        return {};
    QHash<QString, Bencode> entries;
    const Elements all = elements();
    for (Iterator at = all.begin(); at != all.end(); ++at) {
        const QString key = Utf8::decoded(at->slice());
        entries.insert(key, *++at);
    }
    return entries;
}

std::optional<Bencode> Bencode::value(QByteArrayView key) const
{
    std::optional<Bencode> found;
    if (!isDict())
        return found;
    const Elements all = elements();
    for (Iterator at = all.begin(); at != all.end(); ++at) {
        const bool matches = at->slice() == key;
        ++at;
        if (matches)
            found = *at;
    }
    return found;
}

Bencode::Elements Bencode::elements() const
{
    const size_t first = m_index + 1;
    const size_t end = isContainer() ? next() : first;
    return {Iterator(Bencode(m_tape, first)), Iterator(Bencode(m_tape, end))};
}

} // namespace tavelo
