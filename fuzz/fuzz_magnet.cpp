// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "platform/Utf8.h"
#include "torrent/Magnet.h"
#include "torrent/TorrentMetadata.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = Utf8::decoded(fuzzInput(data, size));
    const auto made = TorrentMetadata::parseMagnet(makeMagnet(QString(40, QLatin1Char('a')), text));
    require(made && made->name == text);
    const auto read = TorrentMetadata::parseMagnet(text);
    if (!read)
        return 0;
    require(read->infoHash.size() == 40 && read->infoHash == read->infoHash.toLower());
    const auto again = TorrentMetadata::parseMagnet(read->magnet);
    require(again && *again == *read);
    return 0;
}
