// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "Tour.h"

#include <cstdio>

/// tavelo-tour FOLDER : a picture of every state worth seeing, at two window sizes.
int main(int argc, char **argv)
{
    using namespace tavelo;
    DemoApplication demo(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: tavelo-tour FOLDER\n");
        return 2;
    }
    demo.services().setFaults({.status = 503});
    if (!demo.startServices() || !demo.show())
        return 1;
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const QSize size : {QSize(1440, 900), QSize(980, 640)}) {
        const QString name = QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
        if (!Tour(&demo, folder.filePath(name), size).walk())
            return 1;
    }
    return 0;
}
