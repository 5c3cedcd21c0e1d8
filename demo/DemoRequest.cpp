// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoRequest.h"

namespace tavelo {

DemoRequest DemoRequest::parsed(const QByteArray &head)
{
    DemoRequest request;
    const QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> first = lines.first().trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray &line : lines.sliced(1)) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0)
            request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
    }
    request.keepAlive =
        first.value(2) == "HTTP/1.1" && request.headers.value("connection").toLower() != "close";
    return request;
}

QString DemoRequest::path() const
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(target.split('?').first()));
}

QUrlQuery DemoRequest::query() const
{
    const qsizetype start = target.indexOf('?');
    if (start < 0)
        return {};
    return QUrlQuery(QString::fromUtf8(target.sliced(start + 1).replace('+', "%20")));
}

QString DemoRequest::queryValue(const char *name) const
{
    return query().queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

QString DemoRequest::base() const
{
    return QStringLiteral("http://") + QString::fromLatin1(headers.value("host"));
}

} // namespace tavelo
