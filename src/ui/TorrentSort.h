// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QtQmlIntegration>

#include <cstddef>

/// What a table of search results can be sorted by.
namespace tavelo::TorrentSort {

Q_NAMESPACE
QML_ELEMENT

enum Key { Title, Size, Seeds, Peers, Source };
Q_ENUM_NS(Key)

constexpr std::size_t keyCount = 5;

} // namespace tavelo::TorrentSort
