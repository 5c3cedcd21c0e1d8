// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "main/Intake.h"

#include "app/AppState.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace tavelo {

namespace {

constexpr QLatin1String magnetScheme("magnet:");

bool hasScheme(const QString &text)
{
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    return scheme.match(text).hasMatch();
}

QString addressOf(const QString &argument, const QDir &folder)
{
    if (argument.startsWith(magnetScheme))
        return argument;
    const QString path = QDir::cleanPath(folder.absoluteFilePath(argument));
    if (hasScheme(argument) && !QFileInfo::exists(path))
        return argument;
    return QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
}

} // namespace

QStringList Intake::addresses(const QStringList &arguments, const QString &folder)
{
    QStringList addresses;
    for (const QString &argument : arguments)
        addresses.append(addressOf(argument, QDir(folder)));
    return addresses;
}

void Intake::open(AppState &state, const QString &address)
{
    if (address.startsWith(magnetScheme))
        return state.inspectMagnet(address);
    const QUrl url(address);
    if (QFileInfo(url.path()).suffix().toLower() != QLatin1String("torrent"))
        return;
    if (url.isLocalFile())
        state.inspectTorrentFile(url);
    else
        state.inspectTorrentURL(url);
}

} // namespace tavelo
