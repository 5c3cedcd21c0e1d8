// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/ArchiveFile.h"

#include "catalogue/Text.h"

namespace tavelo {

QUrl ArchiveFile::url() const
{
    QStringList pieces = name.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    std::ranges::transform(pieces, pieces.begin(), Text::pathEncoded);
    return QUrl(itemRoot + pieces.join(QLatin1Char('/')), QUrl::StrictMode);
}

} // namespace tavelo
