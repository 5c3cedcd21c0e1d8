// SPDX-FileCopyrightText: the Tavelo authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace tavelo {

/// A magnet link (BEP 9) with the public trackers. `hash` is neither checked nor re-cased. Only
/// ASCII letters and digits stand unescaped in its values; one without a UTF-8 form is empty.
QString makeMagnet(const QString &hash, const QString &name);

/// Of a magnet link what names the torrent and says where it is, letter for letter: the first `xt`,
/// `dn` and `xl`, every `tr` and `ws`, in the link's order. What else it tells a BitTorrent
/// application to do is left out. Absent for what TorrentMetadata::parseMagnet refuses.
std::optional<QString> essentialMagnet(const QString &link);

} // namespace tavelo
