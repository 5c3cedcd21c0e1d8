// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <QGuiApplication>

#include <cstdio>

namespace {

/// "980x640" as a size; invalid for anything else.
QSize sizeOf(const QString &text)
{
    const QStringList sides = text.split(QLatin1Char('x'));
    return sides.size() == 2 ? QSize(sides[0].toInt(), sides[1].toInt()) : QSize();
}

QString folderOf(const QString &size)
{
    const qreal ratio = qGuiApp->devicePixelRatio();
    return qFuzzyCompare(ratio, 1) ? size : QStringLiteral("%1@%2x").arg(size).arg(ratio);
}

} // namespace

/// tavelo-tour FOLDER SIZE : a picture of every state worth seeing, in a folder of that size; of
/// the window in device-independent pixels, as in "1440x900".
int main(int argc, char **argv)
{
    using namespace tavelo;
    DemoApplication demo(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 || sizeOf(arguments[2]).isEmpty()) {
        std::fprintf(stderr, "usage: tavelo-tour FOLDER SIZE\n");
        return 2;
    }
    demo.services().setFaults({.status = 503});
    demo.useServices();
    if (!demo.show())
        return 1;
    const QString folder = QDir(arguments[1]).filePath(folderOf(arguments[2]));
    return Tour(&demo, folder, sizeOf(arguments[2])).walk() ? 0 : 1;
}
