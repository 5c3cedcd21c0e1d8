// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/InfoHash.h"

#include <openssl/evp.h>

namespace tavelo {

QString infoHashOf(QByteArrayView infoSlice)
{
    QByteArray digest(20, Qt::Uninitialized);
    const int done =
        EVP_Digest(infoSlice.data(), size_t(infoSlice.size()),
                   reinterpret_cast<uchar *>(digest.data()), nullptr, EVP_sha1(), nullptr);
    if (done != 1)
        qFatal("The system's cryptographic library refuses SHA-1.");
    return QString::fromLatin1(digest.toHex());
}

} // namespace tavelo
