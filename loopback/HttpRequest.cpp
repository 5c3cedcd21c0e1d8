// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpRequest.h"

namespace tavelo {

HttpRequest HttpRequest::parsed(const QByteArray &head)
{
    HttpRequest request;
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

QString HttpRequest::path() const
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(encodedPath()));
}

QUrlQuery HttpRequest::query() const
{
    const QByteArray text = target.sliced(std::min(pathSize() + 1, target.size()));
    return QUrlQuery(QString::fromUtf8(QByteArray(text).replace('+', "%20")));
}

QString HttpRequest::queryValue(const char *name) const
{
    return query().queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
}

QString HttpRequest::base() const
{
    return QLatin1String(secure ? "https://" : "http://") +
           QString::fromLatin1(headers.value("host"));
}

qsizetype HttpRequest::pathSize() const
{
    const qsizetype query = target.indexOf('?');
    return query < 0 ? target.size() : query;
}

} // namespace tavelo
