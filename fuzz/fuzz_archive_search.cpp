// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "catalogue/ArchiveParser.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body = fuzzInput(data, size);
    for (const MediaItem &item : ArchiveParser::parseSearch(body)) {
        const bool addresses = item.pageURL().isValid() && item.thumbnailURL().isValid() &&
                               (item.licenseLink().isEmpty() || item.licenseURL);
        if (!addresses || MediaItem::fromJson(item.toJson()) != item)
            std::abort();
    }
    return 0;
}
