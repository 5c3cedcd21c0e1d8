// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/http/HttpHead.h"

#include <QByteArray>

#include <optional>

namespace tavelo {

/// Takes a body out of what its connection brings, and knows for certain where it ends (RFC 9112,
/// 6 and 7).
class HttpBody
{
public:
    /// Absent when the head contradicts itself or names a coding other than chunked.
    static std::optional<HttpBody> of(const HttpHead &head);

    /// Bytes of the body, when the head tells; else -1.
    qint64 length() const { return m_length; }

    /// Moves the body's bytes to the front of `bytes`, which are the next `count` of the
    /// connection. Returns how many they are, -1 when the framing is malformed.
    qint64 decode(char *bytes, qint64 count);

    bool isComplete() const { return m_state == State::Complete; }
    /// The connection brings no more; completes a body whose end is told by that alone.
    void connectionEnded();

private:
    enum class State { Length, UntilClose, ChunkSize, ChunkData, ChunkEnd, Trailer, Complete };

    bool lineEnded();

    State m_state = State::UntilClose;
    qint64 m_length = -1;
    qint64 m_left = 0;      // bytes up to the end of the body or of the chunk
    QByteArray m_line = {}; // the part at hand of a line between chunks
};

} // namespace tavelo
