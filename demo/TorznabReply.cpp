// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "TorznabReply.h"

#include "DemoTorznabItem.h"

namespace tavelo {

namespace {

const QLatin1String apiKey("demo-key");

HttpAnswer document(const QByteArray &xml)
{
    return HttpAnswer::text(200, xml, "application/rss+xml; charset=utf-8");
}

HttpAnswer error(int code, const QString &description)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.writeStartDocument();
    xml.writeEmptyElement(QStringLiteral("error"));
    xml.writeAttribute(QStringLiteral("code"), QString::number(code));
    xml.writeAttribute(QStringLiteral("description"), description);
    xml.writeEndDocument();
    return document(text);
}

HttpAnswer channel(const QString &indexer, const QString &base, const QList<DemoTorrent> &found)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("rss"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    xml.writeNamespace(QStringLiteral("http://www.w3.org/2005/Atom"), QStringLiteral("atom"));
    xml.writeNamespace(DemoTorznabItem::attributeSpace(), QStringLiteral("torznab"));
    xml.writeStartElement(QStringLiteral("channel"));
    xml.writeTextElement(QStringLiteral("title"), indexer);
    xml.writeTextElement(QStringLiteral("link"), base);
    xml.writeTextElement(QStringLiteral("language"), QStringLiteral("en-gb"));
    for (const DemoTorrent &torrent : found)
        DemoTorznabItem(torrent, indexer, base).write(xml);
    xml.writeEndDocument();
    return document(text);
}

} // namespace

HttpAnswer TorznabReply::of(const HttpRequest &request, const QString &indexer,
                            const DemoTorrents &torrents)
{
    const QJsonObject description = torrents.indexer(indexer);
    const int status = description[QLatin1String("status")].toInt();
    if (description.isEmpty())
        return HttpAnswer::notFound();
    if (status != 0)
        return HttpAnswer::text(status, "This indexer is broken.", "text/plain");
    if (request.queryValue("apikey") != apiKey)
        return error(100, QStringLiteral("Invalid API Key"));
    const QString function = request.queryValue("t");
    if (function.isEmpty())
        return error(200, QStringLiteral("Missing parameter (t)"));
    if (function != QLatin1String("search"))
        return error(202, QStringLiteral("No such function"));
    HttpAnswer reply =
        channel(indexer, request.base(), torrents.found(indexer, request.queryValue("q")));
    reply.delay = std::chrono::milliseconds(description[QLatin1String("latency")].toInt());
    return reply;
}

} // namespace tavelo
