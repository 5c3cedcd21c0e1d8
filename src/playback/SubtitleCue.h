// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

/// One timed piece of text.
struct SubtitleCue
{
    double start = 0; // seconds from the beginning of the film
    double end = 0;   // seconds; possibly before the start: then it never shows
    QString text; // lines joined by line feeds; never empty; at most 1,000 characters and 10 lines

    bool operator==(const SubtitleCue &) const = default;
};

} // namespace tavelo
