// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoTorznabItem.h"

#include <QDateTime>
#include <QUrl>

namespace tavelo {

namespace {

void writeAttribute(QXmlStreamWriter &xml, const char *name, const QString &value)
{
    xml.writeEmptyElement(DemoTorznabItem::attributeSpace(), QStringLiteral("attr"));
    xml.writeAttribute(QStringLiteral("name"), QLatin1String(name));
    xml.writeAttribute(QStringLiteral("value"), value);
}

/// RFC 4648, of a number of bytes that needs no padding.
QByteArray base32(const QByteArray &bytes)
{
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
    QByteArray text;
    quint32 held = 0;
    int bits = 0;
    for (const char byte : bytes) {
        held = held << 8 | quint8(byte);
        for (bits += 8; bits >= 5; bits -= 5)
            text += digits[held >> (bits - 5) & 31];
    }
    return text;
}

} // namespace

DemoTorznabItem::DemoTorznabItem(const DemoTorrent &torrent, const QString &indexer,
                                 const QString &base)
    : m_torrent(torrent)
    , m_listing(torrent.on(indexer))
    , m_handle(m_listing[QLatin1String("handle")].toString())
    , m_size(m_listing[QLatin1String("size")].toString())
    , m_base(base)
{}

QString DemoTorznabItem::attributeSpace()
{
    return QStringLiteral("http://torznab.com/schemas/2015/feed");
}

void DemoTorznabItem::write(QXmlStreamWriter &xml) const
{
    const QDateTime date = QDateTime::fromSecsSinceEpoch(m_torrent.content.created, Qt::UTC);
    xml.writeStartElement(QStringLiteral("item"));
    xml.writeTextElement(QStringLiteral("title"), m_torrent.name);
    xml.writeTextElement(QStringLiteral("pubDate"), date.toString(Qt::RFC2822Date));
    writeAddresses(xml);
    if (sizeIsIn("element"))
        xml.writeTextElement(QStringLiteral("size"), QString::number(m_torrent.bytes()));
    xml.writeStartElement(QStringLiteral("description"));
    xml.writeCDATA(QStringLiteral("<b>%1</b><br />").arg(m_torrent.longFilmTitle()));
    xml.writeEndElement();
    xml.writeTextElement(QStringLiteral("category"), QStringLiteral("2000"));
    writeAttributes(xml);
    xml.writeEndElement();
}

void DemoTorznabItem::writeAddresses(QXmlStreamWriter &xml) const
{
    const QString file = m_base + m_torrent.filePath();
    const QString page = m_base + m_torrent.pagePath();
    xml.writeTextElement(QStringLiteral("guid"),
                         is("enclosure") ? page : QString::number(2'800'000 + m_torrent.id));
    if (!is("guid"))
        xml.writeTextElement(QStringLiteral("comments"), page);
    if (is("link"))
        xml.writeTextElement(QStringLiteral("link"), magnet(m_torrent.metainfo.infoHash));
    if (is("torrent link"))
        xml.writeTextElement(QStringLiteral("link"), file);
    if (is("enclosure") || is("page"))
        xml.writeTextElement(QStringLiteral("link"), page);
    if (is("enclosure") || is("magneturl base32"))
        writeEnclosure(xml, file);
    if (is("magnet enclosure"))
        writeEnclosure(xml, magnet(m_torrent.metainfo.infoHash.toUpper()));
}

void DemoTorznabItem::writeEnclosure(QXmlStreamWriter &xml, const QString &address) const
{
    xml.writeEmptyElement(QStringLiteral("enclosure"));
    xml.writeAttribute(QStringLiteral("url"), address);
    if (sizeIsIn("length"))
        xml.writeAttribute(QStringLiteral("length"), QString::number(m_torrent.bytes()));
    else if (sizeIsIn("attribute")) // there the real size stands elsewhere
        xml.writeAttribute(QStringLiteral("length"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("application/x-bittorrent"));
}

void DemoTorznabItem::writeAttributes(QXmlStreamWriter &xml) const
{
    const QByteArray &hash = m_torrent.metainfo.infoHash;
    writeAttribute(xml, "category", QStringLiteral("2000"));
    writeAttribute(xml, "category", QStringLiteral("2040"));
    if (sizeIsIn("attribute"))
        writeAttribute(xml, "size", QString::number(m_torrent.bytes()));
    if (m_listing.contains(QLatin1String("seeders"))) {
        const int seeders = m_listing[QLatin1String("seeders")].toInt();
        const int leechers = m_listing[QLatin1String("leechers")].toInt();
        writeAttribute(xml, "seeders", QString::number(seeders));
        writeAttribute(xml, "peers", QString::number(seeders + leechers));
    }
    if (m_listing[QLatin1String("hash")].toBool(true))
        writeAttribute(xml, "infohash", QLatin1String(hash));
    if (is("magneturl"))
        writeAttribute(xml, "magneturl", magnet(hash));
    if (is("magneturl base32"))
        writeAttribute(xml, "magneturl", magnet(base32(QByteArray::fromHex(hash))));
}

QString DemoTorznabItem::magnet(const QByteArray &hash) const
{
    QByteArray magnet =
        "magnet:?xt=urn:btih:" + hash + "&dn=" + m_torrent.name.toUtf8().toPercentEncoding();
    for (const QList<QByteArray> &tier : m_torrent.content.trackers) {
        for (const QByteArray &tracker : tier)
            magnet += "&tr=" + tracker.toPercentEncoding();
    }
    return QString::fromLatin1(magnet);
}

} // namespace tavelo
