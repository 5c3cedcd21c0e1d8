// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "catalogue/Checksum.h"

namespace tavelo {

Checksum Checksum::ofHex(QCryptographicHash::Algorithm algorithm, const QByteArray &hex)
{
    const QByteArray digest = QByteArray::fromHex(hex);
    const bool isWhole = digest.size() == QCryptographicHash::hashLength(algorithm) &&
                         digest.toHex() == hex.toLower();
    return {algorithm, isWhole ? digest : QByteArray()};
}

} // namespace tavelo
