// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoReply.h"

#include "loopback/ByteRange.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMimeDatabase>

namespace tavelo {

namespace {

QByteArray reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 206:
        return "Partial Content";
    case 304:
        return "Not Modified";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 416:
        return "Range Not Satisfiable";
    case 503:
        return "Service Unavailable";
    default:
        return "Fault";
    }
}

QByteArray httpDate(const QDateTime &time)
{
    return QLocale::c().toString(time.toUTC(), u"ddd, dd MMM yyyy HH:mm:ss 'GMT'").toLatin1();
}

DemoReply unsatisfiable(qint64 size)
{
    DemoReply reply = DemoReply::text(416, {}, "text/plain");
    reply.headers = "Content-Range: bytes */" + QByteArray::number(size) + "\r\n";
    return reply;
}

} // namespace

DemoReply DemoReply::text(int status, const QByteArray &body, const QByteArray &type)
{
    DemoReply reply;
    reply.status = status;
    reply.body = body;
    reply.type = type;
    return reply;
}

DemoReply DemoReply::page(const QString &title, const QString &body)
{
    const QString page =
        QStringLiteral("<!doctype html><html><head><meta charset=\"utf-8\"><title>%1</title></head>"
                       "<body><h1 dir=\"auto\">%1</h1>%2</body></html>");
    return text(200, page.arg(title.toHtmlEscaped(), body).toUtf8(), "text/html; charset=utf-8");
}

DemoReply DemoReply::ofFile(const QString &path, const DemoRequest &request)
{
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return notFound();
    const QFileInfo info(path);
    const qint64 size = file->size();
    const QByteArray date = httpDate(info.lastModified());
    const QByteArray tag = '"' + QByteArray::number(size, 16) + '-' +
                           QByteArray::number(info.lastModified().toMSecsSinceEpoch(), 16) + '"';
    DemoReply reply;
    reply.type =
        QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension).name().toLatin1();
    reply.headers = "Accept-Ranges: bytes\r\nETag: " + tag + "\r\nLast-Modified: " + date + "\r\n";
    if (request.headers.value("if-none-match") == tag) {
        reply.status = 304;
        return reply;
    }
    reply.file = file;
    reply.fileBytes = size;
    const QByteArray condition = request.headers.value("if-range");
    const bool holds = condition.isEmpty() || condition == tag || condition == date;
    const auto range = ByteRange::parsed(request.headers.value("range"), size);
    if (request.method != "GET" || !holds || !range)
        return reply;
    if (range->isEmpty())
        return unsatisfiable(size);
    file->seek(range->first);
    reply.status = 206;
    reply.fileBytes = range->length();
    reply.headers += "Content-Range: bytes " + QByteArray::number(range->first) + '-' +
                     QByteArray::number(range->last) + '/' + QByteArray::number(size) + "\r\n";
    return reply;
}

QByteArray DemoReply::head(bool keepAlive) const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) +
                      "\r\nDate: " + httpDate(QDateTime::currentDateTimeUtc()) +
                      "\r\nConnection: " + (keepAlive ? "keep-alive" : "close") + "\r\n" + headers;
    if (status != 304)
        head += "Content-Type: " + type + "\r\nContent-Length: " + QByteArray::number(length()) +
                "\r\n";
    return head + "\r\n";
}

} // namespace tavelo
