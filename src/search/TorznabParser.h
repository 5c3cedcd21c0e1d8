// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "search/TorznabItem.h"

#include <QList>
#include <QXmlStreamReader>

namespace tavelo {

/// Reads a Torznab answer: an RSS document whose items describe torrents, or an error element. One
/// pass; names count as written, prefix included. No external entity is read; a document that
/// declares entities, or has a tag of hundreds of attributes, is refused.
class TorznabParser
{
public:
    /// `source` is the provider's name, for every result.
    explicit TorznabParser(const QString &source);

    /// The results in document order; items without a title are left out. An error element anywhere
    /// makes it ErrorKind::Service with the indexer's own description (its code says no more); a
    /// document that is no well-formed XML is Malformed. Once.
    Result<QList<TorrentResult>> parse(const QByteArray &body);

private:
    void startElement(QStringView name, const QXmlStreamAttributes &attributes);
    void endElement(QStringView name);
    void readItemAttributes(QStringView name, const QXmlStreamAttributes &attributes);

    const QString m_source;
    QList<TorrentResult> m_results;
    std::optional<Error> m_apiError;
    std::optional<TorznabItem> m_item; // while inside one
    QString m_text;                    // since the last element started
};

} // namespace tavelo
