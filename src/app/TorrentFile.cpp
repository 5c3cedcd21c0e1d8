// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "app/TorrentFile.h"

#include "platform/files/FileContent.h"
#include "platform/http/HttpClient.h"
#include "torrent/TorrentMetadata.h"
#include "transfers/DownloadName.h"

#include <QCoreApplication>
#include <QDir>

namespace tavelo::TorrentFile {

namespace {

constexpr QLatin1String extension(".torrent");

Result<TorrentInfo> withAddress(Result<TorrentInfo> torrent, const QString &path)
{
    if (!torrent)
        return torrent;
    TorrentInfo info = *std::move(torrent);
    info.fileURL = QUrl::fromLocalFile(path);
    return info;
}

// Where the copy of a torrent is to lie; its folder is made.
QString copyPath(const QString &folder, const QString &infoHash, const QString &name)
{
    const QDir own(folder + QLatin1Char('/') + infoHash);
    own.mkpath(QStringLiteral("."));
    const QString path = own.filePath(name + extension);
    const bool possible = !name.isEmpty() && refusal(path).isEmpty();
    return possible ? path : own.filePath(infoHash + extension);
}

Error failure(const char *text)
{
    return {ErrorKind::Storage, QCoreApplication::translate("TorrentFile", text), 0};
}

} // namespace

Result<TorrentInfo> read(const QString &path)
{
    const auto bytes = FileContent::load(path, HttpClient::maxBodyBytes);
    if (!bytes)
        return bytes.error();
    return withAddress(TorrentMetadata::parseTorrent(*bytes), path);
}

Result<TorrentInfo> keep(const QByteArray &bytes, const QString &folder, const QString &name)
{
    auto torrent = TorrentMetadata::parseTorrent(bytes);
    if (!torrent)
        return torrent;
    const QString path = copyPath(folder, torrent->infoHash, name);
    FileContent::replace(path, bytes);
    return withAddress(std::move(torrent), path);
}

std::optional<Error> mismatch(const QString &path, const QString &infoHash)
{
    const auto torrent = read(path);
    if (torrent && torrent->infoHash == infoHash)
        return {};
    if (!torrent && torrent.error().kind == ErrorKind::Storage)
        return failure(QT_TRANSLATE_NOOP(
            "TorrentFile", "The .torrent file can no longer be read. Inspect it again."));
    return failure(QT_TRANSLATE_NOOP(
        "TorrentFile", "The .torrent file was changed since it was shown. Inspect it again."));
}

} // namespace tavelo::TorrentFile
