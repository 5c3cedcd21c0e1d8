// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

#include <optional>

namespace tavelo {

/// A box's type as the number that its four letters are in the file.
consteval quint32 fourCC(const char (&letters)[5])
{
    quint32 code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(letters[i]);
    return code;
}

/// The head of a box of MP4 or QuickTime, of which such files consist.
struct Mp4Box
{
    static constexpr qint64 shortHead = 8;
    static constexpr qint64 longHead = 16;

    quint32 type = 0;
    qint64 head = shortHead; // bytes in front of its content
    qint64 size = 0;         // in bytes, with the head

    bool operator==(const Mp4Box &) const = default;

    /// Whether the box that begins with these 8 bytes has the long head.
    static bool isLong(QByteArrayView bytes);

    /// Of the box that begins with `bytes`, in the last `room` bytes of what it lies in. Absent
    /// when its head is not whole, or its size contradicts itself or the room.
    static std::optional<Mp4Box> read(QByteArrayView bytes, qint64 room);
};

/// The boxes that lie one after the other in `bytes`, up to the first that is none. Views, so
/// `bytes` must outlive it.
class Mp4Boxes
{
public:
    struct Entry
    {
        quint32 type = 0;
        QByteArrayView content;
    };

    explicit Mp4Boxes(QByteArrayView bytes)
        : m_rest(bytes)
    {}

    std::optional<Entry> next();

    /// The content of the first box of that type in `bytes`.
    static std::optional<QByteArrayView> find(QByteArrayView bytes, quint32 type);

private:
    QByteArrayView m_rest;
};

} // namespace tavelo
