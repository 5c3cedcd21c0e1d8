// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>

#include <charconv>
#include <optional>

namespace tavelo {

/// A decimal integer with an optional sign and nothing else; absent when it is not, or does not fit
/// in 64 bits.
inline std::optional<qint64> decimal(QByteArrayView text)
{
    // from_chars knows no plus sign, and must not see a minus behind one.
    if (text.startsWith('+')) {
        text = text.sliced(1);
        if (text.startsWith('-'))
            return {};
    }
    qint64 value = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    return error == std::errc() && end == text.end() ? std::optional(value) : std::nullopt;
}

} // namespace tavelo
