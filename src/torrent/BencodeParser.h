// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Result.h"
#include "torrent/Bencode.h"

namespace tavelo {

/// Reads one bencoded value (BEP 3): strict about its form, indifferent to the order of keys and to
/// what follows it. Memory is at most 24 bytes for each byte of the input, and nesting ends at 40
/// levels. The values are views into the parser.
class BencodeParser
{
public:
    static constexpr int maxLevels = 40;

    explicit BencodeParser(const QByteArray &input);

    BencodeParser(const BencodeParser &) = delete;
    BencodeParser &operator=(const BencodeParser &) = delete;

    /// The value at the start of the input, or TorrentParseError. Once.
    Result<Bencode> parse();

    /// The bytes of the value that the root dictionary holds under "info", as they stand in the
    /// input; absent when it holds none. After parse().
    std::optional<QByteArrayView> infoSlice() const { return m_infoSlice; }

private:
    // Each adds the value at m_position and moves past it; false when it is ill-formed.
    bool readValue(int depth);
    bool readInteger();
    bool readBytes();
    bool readList(int depth);
    bool readDict(int depth);

    bool atEnd() const { return m_position >= m_tape.input.size(); }
    char peek() const { return m_tape.input[m_position]; }
    std::optional<qint64> takeNumberBefore(char delimiter);
    size_t open(Bencode::Kind kind);
    void close(size_t container);

    Bencode::Tape m_tape;
    qsizetype m_position = 0;
    std::optional<QByteArrayView> m_infoSlice;
};

} // namespace tavelo
