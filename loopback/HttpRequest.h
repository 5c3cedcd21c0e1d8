// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrlQuery>

#include <chrono>

namespace tavelo {

struct HttpRequest
{
    QByteArray method;
    QByteArray target;                     // path and query, as sent
    QHash<QByteArray, QByteArray> headers; // names in lower case
    bool keepAlive = true;                 // the client means to use the connection again
    bool secure = false;                   // came over TLS

    // What the service notes down about it.
    int connection = 0; // that it came on; the service's first is 1
    int ordinal = 0;    // among the requests for this path; the first is 1
    std::chrono::steady_clock::time_point arrival = {};

    /// From the request line and the headers, without the empty line that ends them.
    static HttpRequest parsed(const QByteArray &head);

    /// Without the query, as sent.
    QByteArray encodedPath() const { return target.first(pathSize()); }
    /// Percent-decoded; never to be used as the path of a file.
    QString path() const;
    /// As HTML forms are read: "+" is a space.
    QUrlQuery query() const;
    /// The first of that name, decoded.
    QString queryValue(const char *name) const;
    /// Scheme, host and port as the client knows them; it must have sent them.
    QString base() const;

private:
    qsizetype pathSize() const;
};

} // namespace tavelo
