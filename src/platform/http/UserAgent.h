// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace tavelo {

/// The User-Agent header of every request of the program, whoever sends it.
inline const QByteArray &userAgent()
{
    static const QByteArray text = QByteArrayLiteral("TaveloApp/1.0 (macOS)");
    return text;
}

} // namespace tavelo
