// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "transfers/Transfer.h"

#include "transfers/TransferWork.h"

#include <utility>

namespace tavelo {

Transfer::Transfer(Fetch &fetch, TransferRequest request, TransferOptions options)
    : m_orders(std::make_shared<TransferOrders>())
{
    const auto tell = [this](auto signal, auto value) {
        QMetaObject::invokeMethod(
            this,
            [this, signal, value] {
                Q_EMIT(this->*signal)
                (value);
            },
            Qt::QueuedConnection);
    };
    m_thread = std::thread(
        [=, &fetch, orders = m_orders, request = std::move(request), options = std::move(options)] {
            const auto report = [tell](const TransferProgress &progress) {
                tell(&Transfer::progressed, progress);
            };
            // The part file is closed before anyone hears of the end.
            orders->end = TransferWork(fetch, request, options, orders, report).run();
            tell(&Transfer::ended, orders->end);
        });
}

Transfer::~Transfer()
{
    waitForEnd();
}

TransferEnd Transfer::waitForEnd()
{
    stop();
    if (m_thread.joinable())
        m_thread.join();
    return m_orders->end;
}

void Transfer::stop()
{
    const std::scoped_lock lock(m_orders->bell.mutex);
    m_orders->isStopped = true;
    m_orders->bell.ring();
}

void Transfer::discard()
{
    const std::scoped_lock lock(m_orders->bell.mutex);
    m_orders->isStopped = true;
    m_orders->isDiscarded = true;
    m_orders->bell.ring();
}

void Transfer::allowTwo(bool two)
{
    const std::scoped_lock lock(m_orders->bell.mutex);
    m_orders->mayTakeTwo = two;
    m_orders->bell.ring();
}

} // namespace tavelo
