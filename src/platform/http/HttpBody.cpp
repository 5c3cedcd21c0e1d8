// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/HttpBody.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace tavelo {

namespace {

constexpr qsizetype longestLine = 8 * 1024;
constexpr qsizetype mostDigits = 15; // hexadecimal, in a chunk's size

/// -1 for what is no length.
qint64 lengthIn(const QByteArray &field)
{
    // A sender may repeat the field, as long as it says the same.
    const QList<QByteArray> values = field.split(',');
    const QByteArray text = values.first().trimmed();
    const auto same = [&text](const QByteArray &value) { return value.trimmed() == text; };
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.isEmpty() || text.size() > 18 || !std::ranges::all_of(values, same) ||
        !std::ranges::all_of(text, digit))
        return -1;
    return text.toLongLong();
}

/// -1 for what is no size. Extensions are passed over.
qint64 chunkSizeIn(const QByteArray &line)
{
    const QByteArray digits = line.split(';').first().trimmed();
    const auto isHex = [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; };
    if (digits.isEmpty() || digits.size() > mostDigits || !std::ranges::all_of(digits, isHex))
        return -1;
    return digits.toLongLong(nullptr, 16);
}

} // namespace

std::optional<HttpBody> HttpBody::of(const HttpHead &head)
{
    HttpBody body;
    const QByteArray coding = head.field("transfer-encoding").toLower();
    const QByteArray length = head.field("content-length");
    if (head.status == 204 || head.status == 304) {
        body.m_state = State::Complete;
    } else if (!coding.isEmpty()) {
        if (coding != "chunked" || !length.isEmpty())
            return {};
        body.m_state = State::ChunkSize;
    } else if (!length.isEmpty()) {
        body.m_length = body.m_left = lengthIn(length);
        if (body.m_length < 0)
            return {};
        body.m_state = body.m_left > 0 ? State::Length : State::Complete;
    }
    return body;
}

qint64 HttpBody::decode(char *bytes, qint64 count)
{
    if (m_state == State::UntilClose)
        return count;
    qint64 kept = 0;
    for (qint64 at = 0; at < count && !isComplete();) {
        if (m_state == State::Length || m_state == State::ChunkData) {
            const qint64 run = std::min(count - at, m_left);
            std::memmove(bytes + kept, bytes + at, static_cast<size_t>(run));
            kept += run;
            at += run;
            m_left -= run;
            if (m_left == 0)
                m_state = m_state == State::Length ? State::Complete : State::ChunkEnd;
            continue;
        }
        const char c = bytes[at++];
        if (c != '\n')
            m_line += c;
        if (m_line.size() > longestLine || (c == '\n' && !lineEnded()))
            return -1;
    }
    return kept;
}

void HttpBody::connectionEnded()
{
    if (m_state == State::UntilClose)
        m_state = State::Complete;
}

/// A line between chunks is whole; false when it is malformed.
bool HttpBody::lineEnded()
{
    QByteArray line;
    line.swap(m_line);
    if (!line.endsWith('\r'))
        return false;
    line.chop(1);
    switch (m_state) {
    case State::ChunkSize:
        m_left = chunkSizeIn(line);
        m_state = m_left > 0 ? State::ChunkData : State::Trailer;
        return m_left >= 0;
    case State::ChunkEnd:
        m_state = State::ChunkSize;
        return line.isEmpty();
    default: // a trailer's field, or the empty line after them
        if (line.isEmpty())
            m_state = State::Complete;
        return true;
    }
}

} // namespace tavelo
