// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtEndian>

#include <initializer_list>

/// Boxes of MP4 files as a test needs them.
namespace tavelo::mp4 {

template <typename Number>
QByteArray number(Number value)
{
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray numbers(std::initializer_list<quint32> values)
{
    QByteArray bytes;
    for (const quint32 value : values)
        bytes += number(value);
    return bytes;
}

inline QByteArray box(const char *type, const QByteArray &content)
{
    return number(quint32(content.size() + 8)) + type + content;
}

inline QByteArray longBox(const char *type, const QByteArray &content)
{
    return number(quint32(1)) + type + number(quint64(content.size() + 16)) + content;
}

/// A box whose content begins with version 0, no flags.
inline QByteArray table(const char *type, std::initializer_list<quint32> values)
{
    return box(type, numbers({0}) + numbers(values));
}

} // namespace tavelo::mp4
