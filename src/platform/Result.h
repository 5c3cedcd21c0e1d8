// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Error.h"

#include <utility>
#include <variant>

namespace tavelo {

/// A value or the error that stands in its place.
template <typename T>
class Result
{
public:
    Result(T value)
        : m_state(std::in_place_index<0>, std::move(value))
    {}
    Result(Error error)
        : m_state(std::in_place_index<1>, std::move(error))
    {}

    explicit operator bool() const { return m_state.index() == 0; }

    const T &value() const & { return std::get<0>(m_state); }
    T &&value() && { return std::get<0>(std::move(m_state)); }
    const T &operator*() const & { return value(); }
    T &&operator*() && { return std::move(*this).value(); }
    const T *operator->() const { return &value(); }

    const Error &error() const { return std::get<1>(m_state); }

private:
    std::variant<T, Error> m_state;
};

} // namespace tavelo
