// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoroTask>

#include <optional>
#include <utility>

namespace tavelo {

/// The result of `task`; runs the event loop until it is there. Unlike the library's own, it needs
/// no default value of T.
template <typename T>
T awaited(QCoro::Task<T> task)
{
    std::optional<T> result;
    const auto keep = [](QCoro::Task<T> pending, std::optional<T> *place) -> QCoro::Task<> {
        place->emplace(co_await pending);
    };
    QCoro::waitFor(keep(std::move(task), &result));
    return *std::move(result);
}

} // namespace tavelo
