// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/DownloadName.h"

#include "platform/Utf8.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>

#include <sys/stat.h>

#include <cerrno>

namespace tavelo {

namespace {

// Absent for a text with an escape that is none, or whose bytes are no UTF-8.
std::optional<QString> percentDecoded(const QString &text)
{
    static const QRegularExpression loneSign(QStringLiteral("%(?![0-9A-Fa-f]{2})"));
    if (text.contains(loneSign))
        return {};
    const QByteArray bytes = QByteArray::fromPercentEncoding(text.toUtf8());
    const QString decoded = Utf8::decoded(bytes);
    return decoded.toUtf8() == bytes ? std::optional(decoded) : std::nullopt;
}

// Where the extension's dot is; the size when there is no extension.
qsizetype extensionDot(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 && dot + 1 < name.size() ? dot : name.size();
}

QString withoutSlashes(QString name)
{
    return name.replace(QLatin1Char('/'), QLatin1Char('_'));
}

QString decodedLastComponent(const QUrl &url)
{
    QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    if (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    const QByteArray last = path == "/" ? path : path.sliced(path.lastIndexOf('/') + 1);
    return Utf8::decoded(QByteArray::fromPercentEncoding(last));
}

} // namespace

QString lastComponent(const QUrl &url)
{
    return withoutSlashes(decodedLastComponent(url));
}

QString downloadName(const QUrl &url)
{
    const QString name = decodedLastComponent(url);
    return withoutSlashes(percentDecoded(name).value_or(name));
}

QString freeDestination(const QString &folder, const QString &name,
                        const std::function<bool(const QString &path)> &isTaken)
{
    const qsizetype dot = extensionDot(name);
    QString path = folder + QLatin1Char('/') + name;
    for (int counter = 1; isTaken(path); ++counter) {
        path = folder + QLatin1Char('/') + name.first(dot) + QLatin1Char(' ') +
               QString::number(counter) + QLatin1Char('.') +
               name.sliced(qMin(dot + 1, name.size()));
    }
    return path;
}

QString refusal(const QString &path)
{
    if (path.contains(QChar::Null))
        return QCoreApplication::translate("DownloadManager", "The file's name is not allowed.");
    struct stat facts;
    const bool isThere = lstat(QFile::encodeName(path).constData(), &facts) == 0;
    return isThere || errno == ENOENT ? QString() : qt_error_string(errno);
}

} // namespace tavelo
