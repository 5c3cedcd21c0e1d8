// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "CheckedResults.h"
#include "search/ApiBayParser.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    check(parseApiBay(fuzzInput(data, size), QStringLiteral("S")));
    return 0;
}
