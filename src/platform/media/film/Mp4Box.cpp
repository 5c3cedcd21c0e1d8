// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/Mp4Box.h"

#include <QtEndian>

namespace tavelo {

bool Mp4Box::isLong(QByteArrayView bytes)
{
    return bytes.size() >= shortHead && qFromBigEndian<quint32>(bytes.data()) == 1;
}

std::optional<Mp4Box> Mp4Box::read(QByteArrayView bytes, qint64 room)
{
    if (bytes.size() < (isLong(bytes) ? longHead : shortHead))
        return {};
    Mp4Box box;
    box.type = qFromBigEndian<quint32>(bytes.data() + 4);
    box.size = qFromBigEndian<quint32>(bytes.data());
    if (isLong(bytes)) {
        box.head = longHead;
        box.size = qFromBigEndian<qint64>(bytes.data() + 8);
    } else if (box.size == 0) {
        box.size = room; // the last box need not tell
    }
    if (box.size < box.head || box.size > room)
        return {};
    return box;
}

std::optional<Mp4Boxes::Entry> Mp4Boxes::next()
{
    const auto box = Mp4Box::read(m_rest, m_rest.size());
    if (!box)
        return {};
    const Entry entry{box->type, m_rest.sliced(box->head, box->size - box->head)};
    m_rest = m_rest.sliced(box->size);
    return entry;
}

std::optional<QByteArrayView> Mp4Boxes::find(QByteArrayView bytes, quint32 type)
{
    Mp4Boxes boxes(bytes);
    while (const auto box = boxes.next()) {
        if (box->type == type)
            return box->content;
    }
    return {};
}

} // namespace tavelo
