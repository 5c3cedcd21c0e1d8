// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

namespace tavelo {

/// Bencoded values, as in .torrent files.
class BencodeWriter
{
public:
    static QByteArray integer(qint64 value);
    static QByteArray bytes(const QByteArray &value);
    /// Of bencoded values.
    static QByteArray list(const QList<QByteArray> &values);
    /// Of plain keys and bencoded values.
    static QByteArray dictionary(const QMap<QByteArray, QByteArray> &values);
};

} // namespace tavelo
