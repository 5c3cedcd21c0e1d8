// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "playback/SubtitleParser.h"

#include <cmath>

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = SubtitleParser::decoded(fuzzInput(data, size));
    for (const SubtitleCue &cue : SubtitleParser::parse(text)) {
        require(!cue.text.trimmed().isEmpty());
        require(std::isfinite(cue.start) && std::isfinite(cue.end));
    }
    return 0;
}
