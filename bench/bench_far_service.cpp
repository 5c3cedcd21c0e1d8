// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "DemoServer.h"

#include <QCoreApplication>

#include <cstdio>

// The demo's film service alone, for bench/far, which puts it behind a wire with distance. Prints
// its address and serves until it is ended.

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const tavelo::DemoServer services(QCoreApplication::applicationDirPath() +
                                      QLatin1String("/../demo-films"));
    std::printf("%s\n", qPrintable(services.baseUrl()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
