// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveParser.h"

#include <cstdint>
#include <cstdlib>

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto body =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const MediaItem &item : ArchiveParser::parseSearch(body)) {
        const bool addresses = item.pageURL().isValid() && item.thumbnailURL().isValid() &&
                               (item.licenseLink().isEmpty() || item.licenseURL);
        if (!addresses || MediaItem::fromJson(item.toJson()) != item)
            std::abort();
    }
    return 0;
}
