// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTest>

namespace tavelo {

/// The table of a data-driven test: called with a row's name and its values, converted to the
/// columns' types.
template <typename... Types>
struct Table
{
    void operator()(const char *name, const Types &...values) const
    {
        (QTest::newRow(name) << ... << values);
    }
};

/// Begins the table; one name for each type.
template <typename... Types, typename... Names>
Table<Types...> columns(const Names &...names)
{
    (QTest::addColumn<Types>(names), ...);
    return {};
}

} // namespace tavelo
