// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

#include <mutex>

namespace tavelo {

/// The checksums of files, each computed when it is first asked for and kept until the file
/// changes. Any thread.
class FileHashes
{
public:
    struct Hashes
    {
        QString md5; // both in hexadecimal digits; empty where there is no such file
        QString sha1;
    };

    Hashes of(const QString &path);

private:
    std::mutex m_mutex;             // guards what follows; held while a file is read
    QHash<QString, Hashes> m_known; // by path, size and time
};

} // namespace tavelo
