// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrlQuery>

namespace tavelo {

struct DemoRequest
{
    QByteArray method;
    QByteArray target;                     // path and query, as sent
    QHash<QByteArray, QByteArray> headers; // names in lower case
    bool keepAlive = true;                 // the client means to use the connection again

    /// From the request line and the headers, without the empty line that ends them.
    static DemoRequest parsed(const QByteArray &head);

    /// Percent-decoded; never to be used as the path of a file.
    QString path() const;
    /// As HTML forms are read: "+" is a space.
    QUrlQuery query() const;
    /// The first of that name, decoded.
    QString queryValue(const char *name) const;
    /// Scheme, host and port as the client knows them; it must have sent them.
    QString base() const;
};

} // namespace tavelo
