// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/BencodeParser.h"

#include "platform/Decimal.h"
#include "torrent/TorrentParseError.h"

namespace tavelo {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

BencodeParser::BencodeParser(const QByteArray &input)
    : m_tape{input, {}}
{}

Result<Bencode> BencodeParser::parse()
{
    if (!readValue(0))
        return TorrentParseError();
    return Bencode(&m_tape, 0);
}

bool BencodeParser::readValue(int depth)
{
    if (atEnd() || depth >= maxLevels)
        return false;
    switch (peek()) {
    case 'd':
        return readDict(depth);
    case 'l':
        return readList(depth);
    case 'i':
        return readInteger();
    default:
        return isDigit(peek()) && readBytes();
    }
}

bool BencodeParser::readInteger()
{
    ++m_position;
    const auto value = takeNumberBefore('e');
    if (value)
        m_tape.nodes.emplace_back(Bencode::Kind::Int, *value, 0);
    return value.has_value();
}

bool BencodeParser::readBytes()
{
    const auto length = takeNumberBefore(':');
    if (!length || *length > m_tape.input.size() - m_position)
        return false;
    m_tape.nodes.emplace_back(Bencode::Kind::Bytes, m_position, *length);
    m_position += *length;
    return true;
}

bool BencodeParser::readList(int depth)
{
    const size_t list = open(Bencode::Kind::List);
    while (!atEnd()) {
        if (peek() == 'e') {
            close(list);
            return true;
        }
        if (!readValue(depth + 1))
            return false;
    }
    return false;
}

bool BencodeParser::readDict(int depth)
{
    const size_t dict = open(Bencode::Kind::Dict);
    while (!atEnd()) {
        if (peek() == 'e') {
            close(dict);
            return true;
        }
        const Bencode key(&m_tape, m_tape.nodes.size());
        if (!isDigit(peek()) || !readValue(depth + 1))
            return false;
        const qsizetype start = m_position;
        if (!readValue(depth + 1))
            return false;
        if (depth == 0 && key.slice() == "info")
            m_infoSlice = QByteArrayView(m_tape.input).sliced(start, m_position - start);
    }
    return false;
}

std::optional<qint64> BencodeParser::takeNumberBefore(char delimiter)
{
    const qsizetype end = m_tape.input.indexOf(delimiter, m_position);
    if (end < 0)
        return {};
    const auto text = QByteArrayView(m_tape.input).sliced(m_position, end - m_position);
    m_position = end + 1;
    return decimal(text);
}

size_t BencodeParser::open(Bencode::Kind kind)
{
    ++m_position;
    m_tape.nodes.emplace_back(kind, 0, 0);
    return m_tape.nodes.size() - 1;
}

void BencodeParser::close(size_t container)
{
    ++m_position;
    m_tape.nodes[container].setExtent(m_tape.nodes.size());
}

} // namespace tavelo
