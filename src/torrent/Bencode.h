// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <iterator>
#include <optional>
#include <vector>

namespace tavelo {

class BencodeParser;

/// A bencoded value (BEP 3): an integer, a byte string, a list or a dictionary. It is a view into
/// the parser that read it and lives as long as that does; copying it is free.
class Bencode
{
public:
    enum class Kind : quint8 { Int, Bytes, List, Dict };

    class Iterator;
    struct Elements;

    Kind kind() const { return node().kind(); }
    bool isList() const { return kind() == Kind::List; }
    bool isDict() const { return kind() == Kind::Dict; }

    // Absent for a value of another kind.
    std::optional<qint64> integer() const;
    std::optional<QByteArrayView> bytes() const;
    /// The bytes as text; what is not UTF-8 is replaced (Utf8.h), so bytes always have one.
    std::optional<QString> string() const;
    /// By the keys' texts; of keys with the same text the last in the file counts.
    std::optional<QHash<QString, Bencode>> dict() const;

    /// What stands under a key of ASCII letters; absent when this is no dictionary or has no such
    /// key.
    std::optional<Bencode> value(QByteArrayView key) const;
    /// A list's elements, in order; a dictionary's keys and values in turn, as in the file; none
    /// for the other kinds.
    Elements elements() const;

private:
    friend class BencodeParser;

    // All values of an input in one array, each before what it contains.
    class Node
    {
    public:
        Node(Kind kind, qint64 payload, quint64 extent)
            : m_payload(payload)
            , m_extentAndKind(extent << 2 | quint64(kind))
        {}

        Kind kind() const { return Kind(m_extentAndKind & 3); }
        /// The integer, or where the bytes start in the input.
        qint64 payload() const { return m_payload; }
        /// The number of bytes, or the index of the node after the contents.
        qsizetype extent() const { return qsizetype(m_extentAndKind >> 2); }
        void setExtent(quint64 extent) { m_extentAndKind = extent << 2 | quint64(kind()); }

    private:
        qint64 m_payload;
        quint64 m_extentAndKind;
    };
    struct Tape
    {
        QByteArray input;
        std::vector<Node> nodes;
    };

    Bencode(const Tape *tape, size_t index)
        : m_tape(tape)
        , m_index(index)
    {}

    const Node &node() const { return m_tape->nodes[m_index]; }
    bool isContainer() const { return kind() == Kind::List || kind() == Kind::Dict; }
    QByteArrayView slice() const
    {
        return QByteArrayView(m_tape->input).sliced(node().payload(), node().extent());
    }
    size_t next() const { return isContainer() ? size_t(node().extent()) : m_index + 1; }

    const Tape *m_tape;
    size_t m_index;
};

class Bencode::Iterator
{
public:
    explicit Iterator(Bencode at)
        : m_at(at)
    {}

    const Bencode &operator*() const { return m_at; }
    const Bencode *operator->() const { return &m_at; }
    Iterator &operator++()
    {
        m_at.m_index = m_at.next();
        return *this;
    }
    bool operator==(const Iterator &other) const { return m_at.m_index == other.m_at.m_index; }

private:
    Bencode m_at;
};

struct Bencode::Elements
{
    Iterator m_begin;
    Iterator m_end;

    Iterator begin() const { return m_begin; }
    Iterator end() const { return m_end; }
};

} // namespace tavelo
