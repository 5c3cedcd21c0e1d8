// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "DemoTorrent.h"

#include <QXmlStreamWriter>

namespace tavelo {

/// One item of a Torznab answer, in the form that the indexer's listing asks for.
class DemoTorznabItem
{
public:
    /// `torrent` must outlive this. `base` is the services' address.
    DemoTorznabItem(const DemoTorrent &torrent, const QString &indexer, const QString &base);

    void write(QXmlStreamWriter &xml) const;

    /// The namespace of the attr elements.
    static QString attributeSpace();

private:
    void writeAddresses(QXmlStreamWriter &xml) const;
    void writeEnclosure(QXmlStreamWriter &xml, const QString &address) const;
    void writeAttributes(QXmlStreamWriter &xml) const;
    QString magnet(const QByteArray &hash) const;
    bool is(const char *handle) const { return m_handle == QLatin1String(handle); }
    bool sizeIsIn(const char *place) const { return m_size == QLatin1String(place); }

    const DemoTorrent &m_torrent;
    QJsonObject m_listing;
    QString m_handle;
    QString m_size; // "element", "attribute", "length" (the enclosure's) or, for none, empty
    QString m_base;
};

} // namespace tavelo
