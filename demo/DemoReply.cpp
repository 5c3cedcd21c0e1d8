// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoReply.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace tavelo {

namespace {

struct Part
{
    qint64 first = 0;
    qint64 last = 0;
};

/// Absent when the header asks for nothing that can be had.
std::optional<Part> partOf(const QByteArray &range, qint64 size)
{
    static const QRegularExpression form(QStringLiteral("^bytes=([0-9]{0,18})-([0-9]{0,18})$"));
    const auto match = form.match(QString::fromLatin1(range));
    const QString first = match.captured(1);
    const QString last = match.captured(2);
    Part part{0, size - 1};
    if (first.isEmpty())
        part.first = std::max<qint64>(size - last.toLongLong(), 0);
    else
        part.first = first.toLongLong();
    if (!first.isEmpty() && !last.isEmpty())
        part.last = std::min(last.toLongLong(), size - 1);
    const bool asksSomething = match.hasMatch() && !(first.isEmpty() && last.isEmpty());
    return asksSomething && part.first <= part.last ? std::optional(part) : std::nullopt;
}

QByteArray reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 206:
        return "Partial Content";
    case 404:
        return "Not Found";
    case 416:
        return "Range Not Satisfiable";
    default:
        return "Fault";
    }
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

DemoReply DemoReply::ofFile(const QString &path, const DemoRequest &request)
{
    auto file = std::make_shared<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        return text(404, "Not here.", "text/plain");
    const QFileInfo info(path);
    const qint64 size = file->size();
    const QByteArray tag = '"' + QByteArray::number(size, 16) + '-' +
                           QByteArray::number(info.lastModified().toSecsSinceEpoch(), 16) + '"';
    DemoReply reply;
    reply.type =
        QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension).name().toLatin1();
    reply.headers = "Accept-Ranges: bytes\r\nETag: " + tag + "\r\n";
    reply.file = file;
    reply.fileBytes = size;
    const bool wantsPart =
        !request.range.isEmpty() && (request.ifRange.isEmpty() || request.ifRange == tag);
    if (!wantsPart)
        return reply;
    const auto part = partOf(request.range, size);
    if (!part) {
        reply = text(416, {}, "text/plain");
        reply.headers = "Content-Range: bytes */" + QByteArray::number(size) + "\r\n";
        return reply;
    }
    file->seek(part->first);
    reply.status = 206;
    reply.fileBytes = part->last - part->first + 1;
    reply.headers += "Content-Range: bytes " + QByteArray::number(part->first) + '-' +
                     QByteArray::number(part->last) + '/' + QByteArray::number(size) + "\r\n";
    return reply;
}

QByteArray DemoReply::head(bool keepAlive) const
{
    return "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) +
           "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(length()) +
           "\r\nConnection: " + (keepAlive ? "keep-alive" : "close") + "\r\n" + headers + "\r\n";
}

} // namespace tavelo
