// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/files/StandardFolders.h"
#include "platform/http/CurlFetch.h"
#include "transfers/Transfer.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

// One download as the program makes it; bench/far measures it beside the curl program.
//   bench_far_transfer URL CERTIFICATES FOLDER CONNECTIONS

using namespace tavelo;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    QFile certificates(words.value(2));
    if (words.size() != 5 || !certificates.open(QIODevice::ReadOnly))
        return std::puts("bench_far_transfer URL CERTIFICATES FOLDER CONNECTIONS"), 2;
    StandardFolders::relocate(words.at(3));
    CurlFetch fetch(certificates.readAll());
    Transfer transfer(fetch, {.url = QUrl(words.at(1)),
                              .destination = words.at(3) + QLatin1String("/ours"),
                              .name = QStringLiteral("bench")});
    transfer.allowTwo(words.at(4) == QLatin1String("2"));
    QObject::connect(&transfer, &Transfer::ended, &application, [](const TransferEnd &end) {
        if (end.result != TransferResult::Saved)
            std::printf("failed %s\n", qPrintable(end.text));
        QCoreApplication::exit(end.result == TransferResult::Saved ? 0 : 1);
    });
    return QCoreApplication::exec();
}
