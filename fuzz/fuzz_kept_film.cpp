// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FuzzInput.h"
#include "platform/media/film/KeptFilm.h"

#include <QBuffer>
#include <QCryptographicHash>

using namespace tavelo;

/// The input is the file without the hash at its end, which no chance would hit.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray content = fuzzInput(data, size);
    QByteArray file = content + QCryptographicHash::hash(content, QCryptographicHash::Blake2b_256);
    QBuffer device(&file);
    require(device.open(QIODevice::ReadOnly));
    if (const auto film = KeptFilm::read(device))
        require(film->encoded() == file);
    return 0;
}
