// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdlib>

namespace tavelo {

/// The fuzzer's bytes without a copy, so that reading past them is seen.
inline QByteArray fuzzInput(const std::uint8_t *data, std::size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data),
                                   static_cast<qsizetype>(size));
}

inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace tavelo
