// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "CheckedResults.h"
#include "search/YTSParser.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    check(parseYTS(fuzzInput(data, size), QStringLiteral("S")));
    return 0;
}
