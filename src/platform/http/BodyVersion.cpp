// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/BodyVersion.h"

#include "platform/http/ContentRange.h"
#include "platform/http/HttpHead.h"

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

} // namespace

BodyVersion BodyVersion::of(const HttpHead &head, const QUrl &source, qint64 length)
{
    BodyVersion version{source, length};
    const QByteArray modified = head.field("last-modified");
    if (const QByteArray tag = head.field("etag"); isStrongTag(tag))
        version.validator = tag;
    else if (isStrongDate(modified, head.field("date")))
        version.validator = modified;
    return version;
}

bool BodyVersion::isContinuedBy(const HttpHead &head, const QUrl &answering, qint64 from) const
{
    const auto range = ContentRange::parse(head.field("content-range"));
    if (!range || range->first != from || range->last != range->total - 1 ||
        (total >= 0 && range->total != total))
        return false;
    // Mirrors of a file share its tag; a date says nothing beyond its own address.
    return isStrongTag(validator) ? head.field("etag") == validator
                                  : head.field("last-modified") == validator && answering == source;
}

} // namespace tavelo
