// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "CheckedResults.h"
#include "search/TorznabParser.h"

using namespace tavelo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    check(TorznabParser(QStringLiteral("S")).parse(fuzzInput(data, size)));
    return 0;
}
