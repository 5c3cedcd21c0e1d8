// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/BodyVersion.h"

#include "platform/http/ContentRange.h"
#include "platform/http/Fetch.h"

#include <QDateTime>
#include <QLocale>

namespace tavelo {

namespace {

bool isStrongTag(const QByteArray &tag)
{
    return tag.size() > 2 && tag.startsWith('"') && tag.endsWith('"') && tag.count('"') == 2;
}

QDateTime httpDate(const QByteArray &header)
{
    return QLocale::c().toDateTime(QString::fromLatin1(header),
                                   QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
}

/// A file could have been changed again within the second in which the answer was made.
bool isStrongDate(const QByteArray &modified, const QByteArray &answered)
{
    const QDateTime from = httpDate(modified);
    const QDateTime to = httpDate(answered);
    return from.isValid() && to.isValid() && from.secsTo(to) >= 1;
}

QByteArray validatorOf(const QByteArray &tag, const QByteArray &modified, const QByteArray &date)
{
    if (isStrongTag(tag))
        return tag;
    return isStrongDate(modified, date) ? modified : QByteArray();
}

bool isOneHost(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.authority() == other.authority();
}

} // namespace

BodyVersion BodyVersion::of(const FetchHead &head)
{
    const auto range = ContentRange::parse(head.contentRange);
    const qint64 told = range ? range->total : -1;
    return {head.url, head.status == 206 ? told : head.length,
            validatorOf(head.entityTag, head.lastModified, head.date)};
}

SameFile BodyVersion::compare(const BodyVersion &other) const
{
    if (total >= 0 && other.total >= 0 && total != other.total)
        return SameFile::No;
    const bool isTag = isStrongTag(validator);
    const bool isComparable = isTag ? isOneHost(source, other.source) : source == other.source;
    if (validator.isEmpty() || other.validator.isEmpty() || isStrongTag(other.validator) != isTag ||
        !isComparable)
        return SameFile::Perhaps;
    return validator == other.validator ? SameFile::Yes : SameFile::No;
}

} // namespace tavelo
