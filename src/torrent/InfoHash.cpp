// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "torrent/InfoHash.h"

#include <openssl/evp.h>

namespace tavelo {

QString infoHashOf(QByteArrayView infoSlice)
{
    // Looked up once: the library searches its providers each time it is asked by name.
    static const EVP_MD *const sha1 = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    QByteArray digest(20, Qt::Uninitialized);
    const bool done =
        sha1 && EVP_Digest(infoSlice.data(), size_t(infoSlice.size()),
                           reinterpret_cast<uchar *>(digest.data()), nullptr, sha1, nullptr) == 1;
    if (!done)
        qFatal("The system's cryptographic library refuses SHA-1.");
    return QString::fromLatin1(digest.toHex());
}

} // namespace tavelo
