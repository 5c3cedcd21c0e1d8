// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/FileContent.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace tavelo::FileContent {

namespace {

Error failure(const QString &text, ErrorKind kind = ErrorKind::Storage)
{
    return {kind, text, 0};
}

// A full disk takes a part of it, and says why only when it is given the rest.
bool writeAll(QIODevice &file, const QByteArray &content)
{
    for (qint64 done = 0; done < content.size();) {
        const qint64 taken = file.write(content.constData() + done, content.size() - done);
        if (taken <= 0)
            return false;
        done += taken;
    }
    return true;
}

} // namespace

Result<QByteArray> load(const QString &path, qint64 maxBytes)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return failure(QCoreApplication::translate("FileContent", "This is not a file."),
                       ErrorKind::Malformed);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString());
    if (file.size() > maxBytes)
        return failure(QCoreApplication::translate("FileContent", "The file is too large."),
                       ErrorKind::TooLarge);
    const QByteArray content = file.readAll();
    return file.error() == QFile::NoError ? Result(content) : failure(file.errorString());
}

QByteArray read(const QString &path, qint64 maxBytes)
{
    auto content = load(path, maxBytes);
    return content ? *std::move(content) : QByteArray();
}

std::optional<Error> put(const QString &path, const QByteArray &content,
                         const std::function<void()> &beforePlacing)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failure(file.errorString());
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (!writeAll(file, content))
        return failure(file.errorString());
    if (beforePlacing)
        beforePlacing();
    if (!file.commit())
        return failure(file.errorString());
    return syncFolder(QFileInfo(QFileInfo(path).canonicalFilePath()).path());
}

// A file system that cannot synchronise a folder alone says EINVAL.
std::optional<Error> syncFolder(const QString &folder)
{
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool failed = descriptor < 0 || (::fsync(descriptor) != 0 && errno != EINVAL);
    const int reason = errno;
    if (descriptor >= 0)
        ::close(descriptor);
    return failed ? std::optional(failure(qt_error_string(reason))) : std::nullopt;
}

bool replace(const QString &path, const QByteArray &content)
{
    return !put(path, content);
}

} // namespace tavelo::FileContent
