// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "BencodeWriter.h"

namespace tavelo {

QByteArray BencodeWriter::integer(qint64 value)
{
    return 'i' + QByteArray::number(value) + 'e';
}

QByteArray BencodeWriter::bytes(const QByteArray &value)
{
    return QByteArray::number(value.size()) + ':' + value;
}

QByteArray BencodeWriter::list(const QList<QByteArray> &values)
{
    return 'l' + values.join() + 'e';
}

QByteArray BencodeWriter::dictionary(const QMap<QByteArray, QByteArray> &values)
{
    QByteArray text = "d";
    for (auto [key, value] : values.asKeyValueRange())
        text += bytes(key) + value;
    return text + 'e';
}

} // namespace tavelo
