// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/Endpoint.h"

#include "catalogue/NetError.h"
#include "catalogue/Text.h"

namespace tavelo {

namespace {

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

} // namespace

Result<QUrl> endpoint(const QString &base, const QString &path, const QList<QueryItem> &items)
{
    auto url = Text::url(Text::trimmedOfBlanks(base).toString());
    if (!url || url->host().isEmpty())
        return NetError::badURL();
    if (!path.isEmpty()) {
        QString folder = url->path(QUrl::FullyEncoded);
        if (folder.endsWith(QLatin1Char('/')))
            folder.chop(1);
        url->setPath(folder + path, QUrl::StrictMode);
    }
    QStringList query;
    if (!url->query().isEmpty())
        query.append(url->query(QUrl::FullyEncoded));
    for (const QueryItem &item : items)
        query.append(encoded(item.name) + QLatin1Char('=') + encoded(item.value));
    url->setQuery(query.join(QLatin1Char('&')), QUrl::StrictMode);
    return url->isValid() ? Result<QUrl>(*url) : NetError::badURL();
}

} // namespace tavelo
