// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo {

/// The SHA-1 (FIPS 180-4) of a bencoded `info` value, as 40 lowercase hexadecimal digits.
QString infoHashOf(QByteArrayView infoSlice);

} // namespace tavelo
