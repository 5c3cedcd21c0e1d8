// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "catalogue/ArchiveParser.h"

using namespace tavelo;

namespace {

bool isSound(const ArchiveFile &file)
{
    const QUrl url = file.url();
    return url.isValid() && url.host() == QLatin1String("archive.org") &&
           url.path().startsWith(QLatin1String("/download/an item/"));
}

bool areSound(const QList<QUrl> &alternatives)
{
    return alternatives.size() <= 4 && std::ranges::all_of(alternatives, [](const QUrl &url) {
               return url.isValid() && url.scheme() == QLatin1String("https") &&
                      !url.host().isEmpty() && url.userInfo().isEmpty();
           });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray body = fuzzInput(data, size);
    const auto details = ArchiveParser::parseDetails(body, QStringLiteral("an item"));
    if (!details)
        return 0;
    for (const ArchiveFile &file : details->files) {
        if (!isSound(file) || file.sizeText().isEmpty() || !areSound(details->alternatives(file)))
            std::abort();
    }
    const qsizetype kinds = details->playable().size() + details->otherVideos().size() +
                            details->subtitles().size() + (details->torrent() ? 1 : 0);
    if (details->item.downloads != 0 || kinds > details->files.size())
        std::abort();
    return 0;
}
