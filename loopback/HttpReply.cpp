// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpReply.h"

#include "loopback/ByteRange.h"

#include <algorithm>

namespace tavelo {

namespace {

using Framing = HttpAnswer::Framing;

bool meets(const QByteArray &condition, const HttpAnswer &answer)
{
    return condition.isEmpty() || condition == answer.etag ||
           answer.headers.contains({QByteArrayLiteral("Last-Modified"), condition});
}

QByteArray bounds(qint64 first, qint64 last)
{
    return QByteArray::number(first) + '-' + QByteArray::number(last);
}

} // namespace

HttpReply::HttpReply(HttpAnswer answer, const HttpRequest &request)
    : m_answer(std::move(answer))
    , m_headOnly(request.method == "HEAD")
    , m_closes(m_answer.close || !request.keepAlive || m_answer.framing == Framing::Close)
    , m_size(m_answer.size())
{
    if (m_answer.status == 200 && !m_answer.etag.isEmpty() &&
        request.headers.value("if-none-match") == m_answer.etag)
        m_answer.status = 304;
    takeRange(request);
    if (!hasBody())
        m_size = 0;
    takeFault();
}

void HttpReply::takeRange(const HttpRequest &request)
{
    const auto range = ByteRange::parsed(request.headers.value("range"), m_size);
    if (m_answer.status != 200 || !m_answer.ranges || m_headOnly || !range ||
        !meets(request.headers.value("if-range"), m_answer))
        return;
    const QByteArray size = '/' + QByteArray::number(m_size);
    m_answer.status = range->isEmpty() ? 416 : 206;
    m_first = range->isEmpty() ? 0 : range->first;
    m_size = range->isEmpty() ? 0 : range->length();
    const QByteArray part = range->isEmpty() ? "*" : bounds(range->first, range->last);
    const bool lies = !m_answer.contentRange.isEmpty();
    m_answer.headers.append(
        {"Content-Range", lies ? m_answer.contentRange : "bytes " + part + size});
}

void HttpReply::takeFault()
{
    m_length = m_size;
    // A body that was sent to its last byte is not whole before its end is told.
    const qint64 untouched = m_answer.framing == Framing::Length ? m_size : m_size + 1;
    const auto stopAt = [&](std::optional<qint64> place, qint64 limit, Fault fault) {
        if (!place || !hasBody())
            return;
        const qint64 length = std::max<qint64>(*place - m_first, 0);
        if (length >= limit || length > m_length)
            return;
        m_length = std::min(length, m_size);
        m_fault = fault;
    };
    stopAt(m_answer.silentAfter, untouched, Fault::Silence);
    stopAt(m_answer.cutAfter, m_size + 1, Fault::Cut);
}

bool HttpReply::hasBody() const
{
    return !m_headOnly && m_answer.status != 204 && m_answer.status != 304;
}

QByteArray HttpReply::head() const
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(m_answer.status) +
                      " Loopback\r\nDate: " + HttpAnswer::date(QDateTime::currentDateTimeUtc()) +
                      "\r\nConnection: " + (m_closes ? "close" : "keep-alive") + "\r\n";
    const qint64 size = m_headOnly ? m_answer.size() : m_size;
    if (m_answer.framing == Framing::Length && (m_headOnly || hasBody()))
        head += "Content-Length: " + QByteArray::number(size) + "\r\n";
    if (m_answer.framing == Framing::Chunked && hasBody())
        head += "Transfer-Encoding: chunked\r\n";
    if (m_answer.ranges)
        head += "Accept-Ranges: bytes\r\n";
    if (!m_answer.etag.isEmpty())
        head += "ETag: " + m_answer.etag + "\r\n";
    for (const auto &[name, value] : m_answer.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

QByteArray HttpReply::bytes(qint64 offset, qint64 count) const
{
    const qint64 from = m_first + offset;
    const QByteArray part =
        m_answer.source ? m_answer.source->bytes(from, count) : m_answer.body.sliced(from, count);
    if (m_answer.framing != Framing::Chunked || part.isEmpty())
        return part;
    // A chunk that lacks its last byte, where the body is cut within.
    const bool inside = isCut() && offset + count == m_length && m_length < m_size;
    return QByteArray::number(part.size() + inside, 16) + "\r\n" + part + (inside ? "" : "\r\n");
}

QByteArray HttpReply::tail() const
{
    return m_answer.framing == Framing::Chunked && hasBody() && m_fault == Fault::None ? "0\r\n\r\n"
                                                                                       : "";
}

} // namespace tavelo
