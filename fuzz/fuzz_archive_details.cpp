// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveParser.h"

#include <cstdint>
#include <cstdlib>

using namespace tavelo;

namespace {

bool isSound(const ArchiveFile &file)
{
    return file.url.isValid() && file.url.host() == QLatin1String("archive.org") &&
           file.url.path().startsWith(QLatin1String("/download/an item/"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto body =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto details = ArchiveParser::parseDetails(body, QStringLiteral("an item"));
    if (!details)
        return 0;
    for (const ArchiveFile &file : details->files) {
        if (!isSound(file) || file.sizeText().isEmpty())
            std::abort();
    }
    const qsizetype kinds = details->playable().size() + details->otherVideos().size() +
                            details->subtitles().size() + (details->torrent() ? 1 : 0);
    if (details->item.downloads != 0 || kinds > details->files.size())
        std::abort();
    return 0;
}
