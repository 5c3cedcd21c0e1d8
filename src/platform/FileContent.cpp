// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/FileContent.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace tavelo::FileContent {

QByteArray read(const QString &path, qint64 maxBytes)
{
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() <= maxBytes ? file.readAll()
                                                                     : QByteArray();
}

bool replace(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    file.write(content);
    return file.commit();
}

} // namespace tavelo::FileContent
