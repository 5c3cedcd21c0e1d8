// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "storage/HistoryEntry.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto history = historyFromJson(fuzzInput(data, size));
    if (!history)
        return 0;
    const auto again = historyFromJson(toJson(history->whole));
    require(again && again->whole == history->whole && again->damaged == 0);
    return 0;
}
