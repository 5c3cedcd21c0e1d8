// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCryptographicHash>

namespace tavelo {

/// What the catalogue says that a file's bytes hash to.
struct Checksum
{
    QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5; // or Sha1
    QByteArray digest = {};                                            // empty: not known

    bool isKnown() const { return !digest.isEmpty(); }

    /// Of a text of hexadecimal digits, of either case; not known for anything else.
    static Checksum ofHex(QCryptographicHash::Algorithm algorithm, const QByteArray &hex);

    bool operator==(const Checksum &) const = default;
};

} // namespace tavelo
