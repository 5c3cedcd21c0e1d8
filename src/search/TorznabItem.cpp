// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#include "search/TorznabItem.h"

#include "catalogue/Text.h"
#include "platform/http/WebAddress.h"

#include <algorithm>
#include <limits>

namespace tavelo {

namespace {

constexpr std::array names{
    QLatin1String("title"),   QLatin1String("link"),     QLatin1String("guid"),
    QLatin1String("size"),    QLatin1String("comments"), QLatin1String("enclosure"),
    QLatin1String("length"),  QLatin1String("infohash"), QLatin1String("magneturl"),
    QLatin1String("seeders"), QLatin1String("peers")};
static_assert(names.size() == size_t(TorznabItem::Key::Count));

} // namespace

std::optional<TorznabItem::Key> TorznabItem::keyNamed(QStringView name)
{
    const auto *found =
        std::ranges::find_if(names, [&](QLatin1String known) { return name == known; });
    return found == names.end() ? std::nullopt : std::optional(Key(found - names.begin()));
}

std::optional<TorrentResult> TorznabItem::result(const QString &source) const
{
    const auto &title = value(Key::Title);
    if (!title)
        return {};
    TorrentResult result;
    result.title = *title;
    result.sources = {source};
    if (const auto &hash = value(Key::InfoHash))
        result.infoHash = hash->toLower();
    result.id = result.infoHash.value_or(value(Key::Guid).value_or(*title));
    result.magnet = magnet();
    result.torrentURL = torrentURL();
    result.pageURL = url(Key::Comments);
    result.seeders = number(Key::Seeders);
    result.leechers = leechers(result.seeders.value_or(0));
    result.size = number(value(Key::Size) ? Key::Size : Key::Length);
    return result;
}

std::optional<qint64> TorznabItem::number(Key key) const
{
    const auto &text = value(key);
    return text ? Text::integer(*text) : std::nullopt;
}

std::optional<QUrl> TorznabItem::url(Key key) const
{
    const auto &text = value(key);
    return text ? Text::url(*text) : std::nullopt;
}

std::optional<QString> TorznabItem::magnet() const
{
    const auto &link = value(Key::Link);
    if (value(Key::MagnetUrl))
        return url(Key::MagnetUrl) ? value(Key::MagnetUrl) : std::nullopt;
    const bool isMagnet = link && link->startsWith(QLatin1String("magnet:"));
    return isMagnet && url(Key::Link) ? link : std::nullopt;
}

std::optional<QUrl> TorznabItem::torrentURL() const
{
    const auto address = url(value(Key::Enclosure) ? Key::Enclosure : Key::Link);
    return address && isWebAddress(*address) ? address : std::nullopt;
}

// Torznab counts the seeders among the peers.
std::optional<qint64> TorznabItem::leechers(qint64 seeders) const
{
    const auto peers = number(Key::Peers);
    qint64 others = 0;
    if (!peers)
        return {};
    if (__builtin_sub_overflow(*peers, seeders, &others))
        return seeders < 0 ? std::numeric_limits<qint64>::max() : 0;
    return std::max(others, qint64(0));
}

} // namespace tavelo
