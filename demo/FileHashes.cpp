// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "FileHashes.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace tavelo {

namespace {

constexpr qint64 blockBytes = 256LL * 1024;

FileHashes::Hashes computed(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash md5(QCryptographicHash::Md5);
    QCryptographicHash sha1(QCryptographicHash::Sha1);
    while (!file.atEnd()) {
        const QByteArray block = file.read(blockBytes);
        md5.addData(block);
        sha1.addData(block);
    }
    return {QString::fromLatin1(md5.result().toHex()), QString::fromLatin1(sha1.result().toHex())};
}

} // namespace

FileHashes::Hashes FileHashes::of(const QString &path)
{
    const QFileInfo info(path);
    const QString key = QStringLiteral("%1 %2 %3")
                            .arg(info.size())
                            .arg(info.lastModified().toMSecsSinceEpoch())
                            .arg(path);
    const std::scoped_lock lock(m_mutex);
    if (!m_known.contains(key))
        m_known[key] = computed(path);
    return m_known[key];
}

} // namespace tavelo
