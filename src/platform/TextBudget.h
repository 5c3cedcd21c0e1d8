// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

namespace tavelo {

/// How many characters may be made of a document of `bytes` whose parts are repeated in what is
/// made of it: far more than any honest one needs, and in proportion.
constexpr qsizetype textBudget(qsizetype bytes)
{
    return 8 * bytes + 1024 * 1024;
}

} // namespace tavelo
