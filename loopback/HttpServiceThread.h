// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "loopback/HttpService.h"

#include <QThread>

#include <optional>
#include <type_traits>

namespace tavelo {

/// A thread for services: they live there, whatever the thread that made them does meanwhile.
class HttpServiceThread
{
public:
    HttpServiceThread();
    ~HttpServiceThread() { stop(); }
    Q_DISABLE_COPY_MOVE(HttpServiceThread)

    /// Makes a service on the thread, with the arguments of its constructor. It ends with this.
    template <typename... Arguments>
    HttpService &add(const Arguments &...arguments)
    {
        return *run([&] {
            auto *service = new HttpService(arguments...);
            service->setParent(&m_context);
            return service;
        });
    }

    /// Ends the services, and the thread.
    void stop();

    /// Everything else that is done with a service is done by this: waits until the thread has run
    /// `work`, and gives its result.
    template <typename Work>
    auto run(Work work)
    {
        if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
            QMetaObject::invokeMethod(&m_context, work, Qt::BlockingQueuedConnection);
        } else {
            std::optional<std::invoke_result_t<Work>> result;
            QMetaObject::invokeMethod(
                &m_context, [&] { result.emplace(work()); }, Qt::BlockingQueuedConnection);
            return *std::move(result);
        }
    }

private:
    QThread m_thread;
    QObject m_context; // lives on the thread; owns the services
};

} // namespace tavelo
