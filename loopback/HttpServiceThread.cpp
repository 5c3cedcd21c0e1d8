// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "loopback/HttpServiceThread.h"

namespace tavelo {

HttpServiceThread::HttpServiceThread()
{
    m_thread.setObjectName(QStringLiteral("loopback"));
    m_context.moveToThread(&m_thread);
    m_thread.start();
}

void HttpServiceThread::stop()
{
    if (!m_thread.isRunning())
        return;
    run([this] { qDeleteAll(m_context.children()); });
    m_thread.quit();
    m_thread.wait();
}

} // namespace tavelo
