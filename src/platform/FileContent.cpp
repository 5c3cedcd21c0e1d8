// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/FileContent.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace tavelo::FileContent {

Result<QByteArray> load(const QString &path, qint64 maxBytes)
{
    const auto failure = [](const QString &text) { return Error{ErrorKind::Storage, text, 0}; };
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return failure(QCoreApplication::translate("FileContent", "This is not a file."));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString());
    if (file.size() > maxBytes)
        return failure(QCoreApplication::translate("FileContent", "The file is too large."));
    const QByteArray content = file.readAll();
    return file.error() == QFile::NoError ? Result(content) : failure(file.errorString());
}

QByteArray read(const QString &path, qint64 maxBytes)
{
    auto content = load(path, maxBytes);
    return content ? *std::move(content) : QByteArray();
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
