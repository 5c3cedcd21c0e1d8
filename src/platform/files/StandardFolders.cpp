// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/StandardFolders.h"

#include <QStandardPaths>

namespace tavelo::StandardFolders {

namespace {

QString &relocatedRoot()
{
    static QString root;
    return root;
}

QString folder(const QString &relocatedName, QStandardPaths::StandardLocation location)
{
    const QString &root = relocatedRoot();
    const QString base = root.isEmpty() ? QStandardPaths::writableLocation(location)
                                        : root + QLatin1Char('/') + relocatedName;
    return base + QLatin1String("/TaveloApp");
}

} // namespace

QString support()
{
    return folder(QStringLiteral("data"), QStandardPaths::GenericDataLocation);
}

QString movies()
{
    return folder(QStringLiteral("movies"), QStandardPaths::MoviesLocation);
}

QString configuration()
{
    return folder(QStringLiteral("config"), QStandardPaths::GenericConfigLocation);
}

void relocate(const QString &root)
{
    Q_ASSERT(relocatedRoot().isEmpty());
    relocatedRoot() = root;
}

} // namespace tavelo::StandardFolders
