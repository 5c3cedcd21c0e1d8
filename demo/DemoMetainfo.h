// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tavelo {

/// A .torrent file of the demo. Its films do not exist, so its piece hashes are those of nothing.
struct DemoMetainfo
{
    struct File
    {
        QString path; // below the torrent's folder, parts joined by "/"
        qint64 bytes = 0;
    };

    struct Content
    {
        QString name; // the folder's or, with `single`, the file's
        bool single = true;
        QList<File> files;
        QList<QList<QByteArray>> trackers; // by tier
        qint64 created = 0;                // seconds since 1970
    };

    QByteArray infoHash; // 40 lower-case hexadecimal digits
    QByteArray file;

    static DemoMetainfo of(const Content &content);
};

} // namespace tavelo
