// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "ui/PosterBook.h"

namespace tavelo {

PosterBook &PosterBook::shared()
{
    static PosterBook book;
    return book;
}

int PosterBook::attemptAfter(const QUrl &url, int failed)
{
    Entry &entry = m_entries[url.toEncoded()];
    if (entry.attempt <= failed)
        entry.attempt = failed + 1;
    return entry.attempt;
}

} // namespace tavelo
