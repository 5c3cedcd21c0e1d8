// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QPromise>
#include <QThreadPool>

#include <memory>
#include <type_traits>
#include <utility>

namespace tavelo {

/// Runs `work` on `pool`, the shared one by default. Its future may be awaited; nobody needs to.
/// Name the future before awaiting it: GCC 12 destroys a lambda with captures twice when it is a
/// temporary of the awaited expression.
template <typename Work>
auto runOnPool(Work work, QThreadPool *pool = QThreadPool::globalInstance())
{
    using Value = std::invoke_result_t<Work>;
    const auto promise = std::make_shared<QPromise<Value>>();
    promise->start();
    pool->start([promise, work = std::move(work)] {
        if constexpr (std::is_void_v<Value>)
            work();
        else
            promise->addResult(work());
        promise->finish();
    });
    return promise->future();
}

} // namespace tavelo
