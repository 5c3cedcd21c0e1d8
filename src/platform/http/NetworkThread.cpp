// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "platform/http/NetworkThread.h"

#include <QCoreApplication>
#include <QPointer>

namespace tavelo {

NetworkThread &NetworkThread::shared()
{
    static QPointer<NetworkThread> thread;
    if (!thread) {
        thread = new NetworkThread(QCoreApplication::instance());
        thread->setObjectName(QStringLiteral("network"));
        thread->start();
    }
    return *thread;
}

NetworkThread::~NetworkThread()
{
    quit();
    wait();
}

} // namespace tavelo
