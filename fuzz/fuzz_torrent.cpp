// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "torrent/BencodeParser.h"
#include "torrent/TorrentMetadata.h"

#include <algorithm>

using namespace tavelo;

namespace {

// The whole tree, by way of every accessor.
qsizetype sizeOf(const Bencode &value)
{
    qsizetype size = 1 + (value.string() ? value.string()->size() : 0);
    if (const auto dict = value.dict()) {
        for (const Bencode &entry : *dict)
            size += entry.integer().has_value();
    }
    for (const Bencode &element : value.elements())
        size += sizeOf(element);
    return size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray file = fuzzInput(data, size);
    BencodeParser parser(file);
    if (const auto root = parser.parse())
        require(sizeOf(*root) > 0);
    const auto torrent = TorrentMetadata::parseTorrent(file);
    if (!torrent)
        return 0;
    const auto again =
        TorrentMetadata::parseTorrent("d4:info" + parser.infoSlice()->toByteArray() + "e");
    require(again && again->infoHash == torrent->infoHash && again->files == torrent->files);
    const auto linked = TorrentMetadata::parseMagnet(torrent->magnet);
    require(linked && linked->infoHash == torrent->infoHash && linked->name == torrent->name);
    require(std::ranges::is_sorted(torrent->trackers));
    for (const TorrentFileEntry &entry : torrent->files)
        require(entry.path.startsWith(torrent->name));
    return 0;
}
