// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/ResumeToken.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>

namespace tavelo {

namespace {

constexpr QByteArrayView mark = "tavelo resume 1\n"; // the number goes up with the fields
constexpr auto digest = QCryptographicHash::Sha256;

} // namespace

QByteArray ResumeToken::toBytes() const
{
    QByteArray fields;
    QDataStream out(&fields, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << url << partPath << length << version.source << version.total << version.validator;
    return mark.toByteArray() + QCryptographicHash::hash(fields, digest) + fields;
}

std::optional<ResumeToken> ResumeToken::fromBytes(const QByteArray &bytes)
{
    const qsizetype digestEnd = mark.size() + QCryptographicHash::hashLength(digest);
    if (bytes.size() < digestEnd || !bytes.startsWith(mark))
        return {};
    // Checked first: the fields of a damaged token may ask for any amount of memory.
    const QByteArray fields = bytes.sliced(digestEnd);
    if (QCryptographicHash::hash(fields, digest) != bytes.first(digestEnd).sliced(mark.size()))
        return {};
    ResumeToken token;
    QDataStream in(fields);
    in.setVersion(QDataStream::Qt_6_4);
    in >> token.url >> token.partPath >> token.length >> token.version.source >>
        token.version.total >> token.version.validator;
    if (in.status() != QDataStream::Ok || !in.atEnd() || token.length <= 0 ||
        token.version.validator.isEmpty())
        return {};
    return token;
}

} // namespace tavelo
