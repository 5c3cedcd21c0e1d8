// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace tavelo::Utf8 {

/// Appends the text of any bytes: each maximal subpart of an ill-formed sequence becomes one U+FFFD
/// (Unicode, 3.9), and U+FEFF stays, at the start too. QString's own decoder does neither.
void appendDecoded(QString &text, QByteArrayView bytes);

QString decoded(QByteArrayView bytes);

} // namespace tavelo::Utf8
