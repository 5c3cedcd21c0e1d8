// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/media/film/KeptFilm.h"

#include "platform/media/film/Mp4Index.h"

#include <QCryptographicHash>
#include <QDataStream>

#include <algorithm>

namespace tavelo {

namespace {

constexpr auto hashKind = QCryptographicHash::Blake2b_256;
constexpr qsizetype hashBytes = 32;
constexpr quint32 form = 0x54764631; // changes with the form of the file
constexpr quint16 maxValidatorBytes = 1024;

QByteArray hashOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, hashKind);
}

bool isSound(const KeptFilm &film)
{
    qint64 all = 0;
    for (const KeptFilm::Piece &piece : film.pieces) {
        const qint64 size = piece.bytes.size();
        const bool isInside = size > 0 && piece.offset >= 0 && piece.offset <= film.version.total &&
                              size <= film.version.total - piece.offset;
        all += size;
        if (!isInside || all > KeptFilm::maxBytes)
            return false;
    }
    return film.key.size() == hashBytes && film.pieces.size() <= KeptFilm::maxPieces &&
           film.version.validator.size() <= maxValidatorBytes;
}

/// Reads the file's fields, none of which may be longer than what is left of it.
class Reader
{
public:
    explicit Reader(QIODevice &file)
        : m_file(file)
        , m_hash(hashKind)
    {}

    template <typename Number>
    Number number()
    {
        const QByteArray raw = bytes(sizeof(Number));
        return raw.isEmpty() ? Number() : qFromBigEndian<Number>(raw.constData());
    }

    QByteArray bytes(qint64 count)
    {
        if (m_failed || count > m_file.size() - m_file.pos() - hashBytes) {
            m_failed = true;
            return {};
        }
        const QByteArray read = m_file.read(count);
        m_failed = read.size() != count;
        m_hash.addData(read);
        return read;
    }

    bool hasFailed() const { return m_failed; }

    /// Whether the hash is that of all before it, and nothing follows.
    bool endsWell() { return !m_failed && m_file.read(hashBytes + 1) == m_hash.result(); }

private:
    QIODevice &m_file;
    QCryptographicHash m_hash;
    bool m_failed = false;
};

} // namespace

QByteArray KeptFilm::keyOf(const QUrl &url)
{
    return hashOf(url.toEncoded(QUrl::RemoveFragment));
}

ByteSpan KeptFilm::mediaAround(const Mp4Index &index, double place,
                               const std::function<bool(const ByteSpan &)> &isHeld)
{
    const ByteSpan ahead = index.bytesFor(place, place + 2);
    for (const double last : {15.0, 10.0, 5.0}) {
        const ByteSpan past = index.bytesFor(std::max(place - last, 0.0), place);
        const ByteSpan media{std::min(past.first, ahead.first), std::max(past.end, ahead.end)};
        if (media.size() <= maxMediaBytes && isHeld(past))
            return media;
    }
    return {ahead.first, std::min(ahead.end, ahead.first + maxMediaBytes)};
}

QByteArray KeptFilm::encoded() const
{
    if (!isSound(*this))
        return {};
    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    const auto raw = [&](const QByteArray &bytes) {
        out.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
    };
    out << form;
    raw(key);
    out << version.total << static_cast<quint16>(version.validator.size());
    raw(version.validator);
    out << static_cast<quint16>(pieces.size());
    for (const Piece &piece : pieces) {
        out << piece.offset << static_cast<quint32>(piece.bytes.size());
        raw(piece.bytes);
    }
    file += hashOf(file);
    return file.size() <= maxBytes ? file : QByteArray();
}

std::optional<KeptFilm> KeptFilm::read(QIODevice &file)
{
    Reader in(file);
    if (file.size() > maxBytes || in.number<quint32>() != form)
        return {};
    KeptFilm film;
    film.key = in.bytes(hashBytes);
    film.version.total = in.number<qint64>();
    film.version.validator = in.bytes(in.number<quint16>());
    const quint16 count = in.number<quint16>();
    for (int i = 0; i < count && !in.hasFailed(); ++i) {
        const auto offset = in.number<qint64>();
        film.pieces.append({offset, in.bytes(in.number<quint32>())});
    }
    if (!in.endsWell() || !isSound(film))
        return {};
    return film;
}

} // namespace tavelo
