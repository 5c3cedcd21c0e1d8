// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoMetainfo.h"

#include "BencodeWriter.h"

#include <QCryptographicHash>

namespace tavelo {

namespace {

constexpr qint64 leastPieceLength = 256LL * 1024;
constexpr qint64 mostPieces = 1024;

QByteArray sha1(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

qint64 sizeOf(const DemoMetainfo::Content &content)
{
    qint64 bytes = 0;
    for (const DemoMetainfo::File &file : content.files)
        bytes += file.bytes;
    return bytes;
}

qint64 pieceLengthFor(qint64 bytes)
{
    qint64 length = leastPieceLength;
    while (length * mostPieces < bytes)
        length *= 2;
    return length;
}

/// As many digests as there are pieces, each made from the one before it.
QByteArray piecesOf(const DemoMetainfo::Content &content, qint64 pieceLength)
{
    const qint64 count = (sizeOf(content) + pieceLength - 1) / pieceLength;
    QByteArray digest = content.name.toUtf8();
    QByteArray pieces;
    for (qint64 i = 0; i < count; ++i) {
        digest = sha1(digest);
        pieces += digest;
    }
    return pieces;
}

QByteArray filesOf(const DemoMetainfo::Content &content)
{
    QList<QByteArray> files;
    for (const DemoMetainfo::File &file : content.files) {
        QList<QByteArray> parts;
        for (const QString &part : file.path.split(QLatin1Char('/')))
            parts.append(BencodeWriter::bytes(part.toUtf8()));
        files.append(BencodeWriter::dictionary({{"length", BencodeWriter::integer(file.bytes)},
                                                {"path", BencodeWriter::list(parts)}}));
    }
    return BencodeWriter::list(files);
}

QByteArray infoOf(const DemoMetainfo::Content &content)
{
    const qint64 pieceLength = pieceLengthFor(sizeOf(content));
    QMap<QByteArray, QByteArray> info{
        {"name", BencodeWriter::bytes(content.name.toUtf8())},
        {"piece length", BencodeWriter::integer(pieceLength)},
        {"pieces", BencodeWriter::bytes(piecesOf(content, pieceLength))}};
    if (content.single)
        info.insert("length", BencodeWriter::integer(sizeOf(content)));
    else
        info.insert("files", filesOf(content));
    return BencodeWriter::dictionary(info);
}

QByteArray announceListOf(const DemoMetainfo::Content &content)
{
    QList<QByteArray> tiers;
    for (const QList<QByteArray> &trackers : content.trackers) {
        QList<QByteArray> tier;
        for (const QByteArray &tracker : trackers)
            tier.append(BencodeWriter::bytes(tracker));
        tiers.append(BencodeWriter::list(tier));
    }
    return BencodeWriter::list(tiers);
}

} // namespace

DemoMetainfo DemoMetainfo::of(const Content &content)
{
    const QByteArray info = infoOf(content);
    QMap<QByteArray, QByteArray> root{{"created by", BencodeWriter::bytes("Tavelo's demo")},
                                      {"creation date", BencodeWriter::integer(content.created)},
                                      {"info", info}};
    if (!content.trackers.isEmpty())
        root.insert("announce", BencodeWriter::bytes(content.trackers.first().value(0)));
    if (content.trackers.size() > 1)
        root.insert("announce-list", announceListOf(content));
    return {sha1(info).toHex(), BencodeWriter::dictionary(root)};
}

} // namespace tavelo
