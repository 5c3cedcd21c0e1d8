// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include "catalogue/TorrentResult.h"

#include <array>

namespace tavelo {

/// What a Torznab feed says of one item, by the names that elements and attributes share. Of
/// several values under a name the last counts; names that no result needs are not kept.
class TorznabItem
{
public:
    enum class Key {
        Title,
        Link,
        Guid,
        Size,
        Comments,
        Enclosure,
        Length,
        InfoHash,
        MagnetUrl,
        Seeders,
        Peers,
        Count
    };

    /// Absent for a name that is not kept; letter case counts.
    static std::optional<Key> keyNamed(QStringView name);

    void insert(Key key, const QString &value) { m_values[size_t(key)] = value; }

    /// Absent when the item has no title.
    std::optional<TorrentResult> result(const QString &source) const;

private:
    const std::optional<QString> &value(Key key) const { return m_values[size_t(key)]; }
    std::optional<qint64> number(Key key) const;
    std::optional<QUrl> url(Key key) const;
    std::optional<QString> magnet() const;
    std::optional<QUrl> torrentURL() const;
    std::optional<qint64> leechers(qint64 seeders) const;

    std::array<std::optional<QString>, size_t(Key::Count)> m_values;
};

} // namespace tavelo
