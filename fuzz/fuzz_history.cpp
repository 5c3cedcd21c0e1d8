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
    const auto json = toJson(*history);
    require(json.has_value());
    require(historyFromJson(*json) == history);
    return 0;
}
